// Loaded shift grids: the in-memory form every grid format is read into, the
// bilinear interpolation of the shifts and the forward and inverse point
// loops shared by the grid methods.  Internal to transformations/.
#pragma once

#include "transformations/methods.h"

#include <cstdint>

namespace ko {

// One rectangular grid of nodes.  Node (row r from the south, column c from
// the west) holds `components` floats at values[(r * cols + c) * components]:
// the latitude shift and the longitude shift in arc-seconds, positive north
// and east, then, for three components, the ellipsoidal height shift in
// metres.
struct ShiftGrid {
  double south;      // latitude of row 0, radians
  double west;       // longitude of column 0, radians in [-pi, pi)
  double lat_step;   // radians
  double lon_step;   // radians
  double lat_span;   // (rows - 1) × lat_step
  double lon_span;   // (cols - 1) × lon_step
  int32_t rows;
  int32_t cols;
  int32_t parent;        // index of the enclosing grid, -1 at the top level
  int32_t first_child;   // children[first_child .. first_child + child_count)
  int32_t child_count;
  int32_t half_open;     // 1: a point on the north or west edge belongs to the parent
  float *values;
};

// A whole grid file: its grids, the index of children (the top level
// first), and one block of node values.  Allocated as a single block from
// ko_allocate_rtn; release it with grid_set_free.
struct GridSet {
  uint32_t format;      // the GridFormat it was read from
  int32_t count;        // grids
  int32_t top_count;    // grids at the top level: children[0 .. top_count)
  int32_t components;   // 2 (horizontal) or 3 (with heights)
  ko_gcs_extent extent; // degrees: the union of the top-level grids, the first one's steps
  ShiftGrid *grids;
  int32_t *children;
  float *values;
};

enum class GridFormat : uint32_t {
  kNtv2 = 0x4e545632,     // "NTV2"
  kNadcon = 0x4e41444e,   // "NADN"
  kNoaaB = 0x4e4f4142,    // "NOAB"
};

// Builder for a GridSet: the caller fills the grid descriptions (with
// rows, cols, parent, half_open, the extent fields), then allocates;
// allocate() lays out the block, links the children and points every grid
// at its share of the values, which the caller then fills.
struct GridLayout {
  GridFormat format;
  int32_t count;
  int32_t components;
};
// Allocates the block for `layout` with the grids copied from `grids`;
// null when the allocation fails or a grid's parent index is invalid.
GridSet *grid_set_allocate(const GridLayout &layout, const ShiftGrid *grids);
void grid_set_free(GridSet *set);
// A set of one top-level grid, described in degrees (west in any 360°
// range), with its extent recorded; null for an invalid description.
GridSet *grid_set_single(GridFormat format, double south, double west, double lat_step,
                         double lon_step, int32_t rows, int32_t cols, int32_t components);

// Owner of a GridSet while a loader fills it.
struct GridSetFreer {
  void operator()(GridSet *set) const { grid_set_free(set); }
};
using OwnedGridSet = std::unique_ptr<GridSet, GridSetFreer>;

// Largest grid the loaders accept, in nodes (all grids of a file together):
// far beyond any published grid, small enough that sizes cannot overflow.
inline constexpr uint64_t kMaxGridNodes = uint64_t{1} << 28;

// Interpolated shift at (lon, lat), radians: out[0] latitude and out[1]
// longitude shift in radians, out[2] height shift in metres (0 without
// heights).  False when no grid holds the point.
bool grid_set_shift(const GridSet &set, double lon, double lat, double out[3]);

// The grid methods' point loops: add the shift (forward), or find the point
// whose shifted position is the target by fixed-point iteration (inverse).
// Points outside every grid, or not finite, are left alone and not counted.
int grid_set_apply(const GridSet *set, bool inverse, int n, double *coord, double *z);

}  // namespace ko

namespace ko {

// File readers.  Each returns a new GridSet (free with grid_set_free), or
// null when a file is missing, unreadable, truncated or describes itself
// inconsistently; nothing is ever read past the end of a file.  A non-empty
// extent (degrees) limits what is loaded to the grids (NTv2) that meet it.
GridSet *ntv2_read(const char *path, const ko_gcs_extent *extent);
GridSet *nadcon_read(const char *las_path, const char *los_path);
// NOAA .b grids (NADCON5, GEOCON): latitude and longitude shifts, and the
// ellipsoidal height shifts when eht_path is not null.
GridSet *noaa_b_read(const char *lat_path, const char *lon_path, const char *eht_path);

}  // namespace ko
