// NADCON5 (109615): latitude, longitude and ellipsoidal height shifts
// interpolated bilinearly in the NOAA .b grids of NADCON 5.0 (D. A. Smith
// et al., NOAA Technical Memorandum NOS NGS 63, 2017), read from the data
// directory's "nadcon5" folder.  The format and the naming of the three
// grids are in noaa_b_grid.cpp and grid_methods.h.
#include "transformations/grid_methods.h"

namespace ko {

const GridFormatSpec kNadcon5Format{"nadcon5", noaa_b_files, noaa_b_open};

}  // namespace ko
