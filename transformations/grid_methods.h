// The grid methods' slots besides the point kernels: the constants loader
// and unloader, the usability check and the file-name function, over the
// data directory.  Internal to transformations/.
//
// A grid method's files are named by the Dataset_ parameter in slot 15:
// its name is "Dataset_<file>" (the prefix is optional where a file name is
// asked for).  <file> is looked for in the format's subdirectory of the
// data directory (ko_datadir_get): "ntv2", "nadcon" (NADCON and HARN),
// "nadcon5" or "geocon"; an absolute <file> is taken as it stands.
//  - NTv2: <file>, with ".gsb" added when it has no extension.
//  - NADCON, HARN: <file>.las and <file>.los (a ".las" or ".los" ending of
//    <file> is dropped first).
//  - NADCON5, GEOCON: three grids, latitude, longitude and ellipsoidal
//    height.  When <file> contains "lat", it names the latitude grid and the
//    others replace its last "lat" by "lon" and "eht"; otherwise they are
//    <file>.lat.b, <file>.lon.b and <file>.eht.b.  The height grid is
//    optional: without it heights pass unchanged.
#pragma once

#include "transformations/grid_set.h"

namespace ko {

inline constexpr int kGridPathSize = 1024;

// The files of one grid transformation, full paths.
struct GridFiles {
  int count = 0;     // files named
  int required = 0;  // the first `required` must exist; the rest are optional
  char path[3][kGridPathSize] = {};
};

// One format: its subdirectory, how a Dataset_ name becomes its files, and
// how the files are read.
struct GridFormatSpec {
  const char *subdir;
  bool (*name_files)(const char *file, const char *dir, GridFiles &files);
  GridSet *(*read)(const GridFiles &files, const ko_gcs_extent *extent);
};

// The NOAA .b naming and reading that NADCON5 and GEOCON share.
bool noaa_b_files(const char *file, const char *dir, GridFiles &files);
GridSet *noaa_b_open(const GridFiles &files, const ko_gcs_extent *extent);

extern const GridFormatSpec kNtv2Format;
extern const GridFormatSpec kNadconFormat;   // NADCON and HARN
extern const GridFormatSpec kNadcon5Format;
extern const GridFormatSpec kGeoconFormat;

// The file part of a Dataset_ name ("Dataset_" dropped); null when empty.
const char *dataset_file(const char *dataset_name);
// Joins dir and name with "/" into out; false when it does not fit.
bool join_path(const char *dir, const char *name, char (&out)[kGridPathSize]);
// The files of a Dataset_ name for a format, under the data directory.
bool grid_files(const GridFormatSpec &format, const char *dataset_name, GridFiles &files);

// Constants loader (method vector slot 4): reads the grid of slot 15's
// Dataset_ parameter into constants (its data, and its extent in degrees).
// Returns 1, or -1 when the parameter is missing or a file is missing,
// unreadable or malformed (final until the constants are unloaded).  The
// flag is accepted and not needed by these formats; a non-empty extent
// limits an NTv2 load to the sub-grids that meet it.
int grid_load(const GridFormatSpec &format, ko_constants *constants,
              ko_parameter *const *parms, int flag, const ko_gcs_extent *extent);
// Constants unloader (slot 5): frees the grid and clears the data pointer.
void grid_unload(ko_constants *constants);
// Usability check (slot 8): 1 when every required file can be opened for
// reading, else 0.
int grid_usable(const GridFormatSpec &format, const char *dataset_name);
// File-name function (slot 9): writes the full paths, one per line, into
// buf; returns the number of files, 0 for an empty name and -1 when buf is
// too small (buf is then emptied).
int grid_filenames(const GridFormatSpec &format, const char *dataset_name, char *buf, int size);

// The slot functions per format, ready for the method vectors.
template <const GridFormatSpec &F>
int grid_load_for(ko_constants *constants, ko_parameter *const *parms, int flag,
                  const ko_gcs_extent *extent) {
  return grid_load(F, constants, parms, flag, extent);
}
template <const GridFormatSpec &F>
int grid_usable_for(const char *dataset_name) {
  return grid_usable(F, dataset_name);
}
template <const GridFormatSpec &F>
int grid_filenames_for(const char *dataset_name, char *buf, int size) {
  return grid_filenames(F, dataset_name, buf, size);
}

}  // namespace ko
