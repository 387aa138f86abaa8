// GEOCON (109614): latitude, longitude and ellipsoidal height shifts
// interpolated bilinearly in the NOAA .b grids of the NGS program GEOCON,
// read from the data directory's "geocon" folder.  Latitude and longitude
// shifts are taken in arc-seconds (positive north and east) and height
// shifts in metres, as in NADCON 5.0, whose grid format GEOCON shares
// (noaa_b_grid.cpp).
#include "transformations/grid_methods.h"

namespace ko {

const GridFormatSpec kGeoconFormat{"geocon", noaa_b_files, noaa_b_open};

}  // namespace ko
