// Loaded shift grids: block layout, grid search, bilinear interpolation and
// the forward and inverse point loops of the grid methods.
#include "transformations/grid_set.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ko {

namespace {

constexpr double kArcsec = kPi / 648000.0;  // radians per arc-second
constexpr std::size_t kAlign = alignof(std::max_align_t);

std::size_t aligned(std::size_t size) { return (size + kAlign - 1) / kAlign * kAlign; }

// Points this close outside a grid (in cells) count as on its edge, so that
// an edge given in degrees stays inside after conversion to radians.
constexpr double kEdgeCells = 1e-9;

// Offset of the point from the grid's south-west node in cells, or false
// when the grid does not hold it.  A top-level grid holds its whole closed
// rectangle; a half-open child leaves its north and west edges to its
// parent, so that a point on a shared edge takes the parent's value.
bool locate(const ShiftGrid &g, double lon, double lat, double &fx, double &fy) {
  double dx = lon - g.west;
  if (dx < -kEdgeCells * g.lon_step) dx += kTwoPi;
  const double x = dx / g.lon_step, y = (lat - g.south) / g.lat_step;
  const double last_x = g.cols - 1, last_y = g.rows - 1;
  const bool inside = g.half_open != 0
                          ? (x > 0.0 && x <= last_x + kEdgeCells && y >= -kEdgeCells && y < last_y)
                          : (x >= -kEdgeCells && x <= last_x + kEdgeCells && y >= -kEdgeCells &&
                             y <= last_y + kEdgeCells);
  if (!inside) return false;
  fx = std::clamp(x, 0.0, last_x);
  fy = std::clamp(y, 0.0, last_y);
  return true;
}

// Descends from the top level to the densest grid that holds the point.
const ShiftGrid *find_grid(const GridSet &set, double lon, double lat, double &fx,
                           double &fy) {
  const int32_t *list = set.children;
  int32_t len = set.top_count;
  const ShiftGrid *found = nullptr;
  for (int depth = 0; depth <= set.count; ++depth) {
    const ShiftGrid *next = nullptr;
    for (int32_t k = 0; k < len; ++k) {
      const ShiftGrid &g = set.grids[list[k]];
      if (locate(g, lon, lat, fx, fy)) {
        next = &g;
        break;
      }
    }
    if (next == nullptr) break;
    found = next;
    list = set.children + next->first_child;
    len = next->child_count;
  }
  return found;  // locate() wrote fx, fy only for the grids that held the point
}

}  // namespace

GridSet *grid_set_allocate(const GridLayout &layout, const ShiftGrid *grids) {
  if (layout.count <= 0 || (layout.components != 2 && layout.components != 3)) return nullptr;
  const auto count = static_cast<std::size_t>(layout.count);
  uint64_t nodes = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const ShiftGrid &g = grids[i];
    if (g.rows < 2 || g.cols < 2 || g.parent < -1 || g.parent >= layout.count ||
        g.parent == static_cast<int32_t>(i))
      return nullptr;
    nodes += static_cast<uint64_t>(g.rows) * static_cast<uint64_t>(g.cols);
    if (nodes > kMaxGridNodes) return nullptr;
  }
  const std::size_t head = aligned(sizeof(GridSet));
  const std::size_t grid_bytes = aligned(count * sizeof(ShiftGrid));
  const std::size_t child_bytes = aligned(count * sizeof(int32_t));
  const std::size_t value_bytes =
      static_cast<std::size_t>(nodes) * static_cast<std::size_t>(layout.components) * sizeof(float);
  auto *block = static_cast<unsigned char *>(
      ko_allocate_rtn(head + grid_bytes + child_bytes + value_bytes, 0, "ko_grid"));
  if (block == nullptr) return nullptr;
  auto *set = ::new (block) GridSet{};
  set->format = static_cast<uint32_t>(layout.format);
  set->count = layout.count;
  set->components = layout.components;
  set->grids = reinterpret_cast<ShiftGrid *>(block + head);
  set->children = reinterpret_cast<int32_t *>(block + head + grid_bytes);
  set->values = reinterpret_cast<float *>(block + head + grid_bytes + child_bytes);
  std::memcpy(set->grids, grids, count * sizeof(ShiftGrid));

  // Children index: the top level first, then each grid's children in file
  // order, so that a search visits grids in the order the file gives them.
  int32_t next = 0;
  for (int32_t i = 0; i < layout.count; ++i)
    if (set->grids[i].parent < 0) set->children[next++] = i;
  set->top_count = next;
  for (int32_t p = 0; p < layout.count; ++p) {
    set->grids[p].first_child = next;
    set->grids[p].child_count = 0;
    for (int32_t i = 0; i < layout.count; ++i) {
      if (set->grids[i].parent == p) {
        set->children[next++] = i;
        ++set->grids[p].child_count;
      }
    }
  }
  float *values = set->values;
  for (std::size_t i = 0; i < count; ++i) {
    ShiftGrid &g = set->grids[i];
    g.values = values;
    values += static_cast<std::size_t>(g.rows) * static_cast<std::size_t>(g.cols) *
              static_cast<std::size_t>(layout.components);
  }
  // A file whose parents form a cycle has no top level to search from.
  if (set->top_count == 0) {
    grid_set_free(set);
    return nullptr;
  }
  return set;
}

GridSet *grid_set_single(GridFormat format, double south, double west, double lat_step,
                         double lon_step, int32_t rows, int32_t cols, int32_t components) {
  if (!(std::isfinite(south) && std::isfinite(west) && lat_step > 0.0 && lon_step > 0.0 &&
        std::isfinite(lat_step) && std::isfinite(lon_step) && rows >= 2 && cols >= 2))
    return nullptr;
  const double north = south + (rows - 1) * lat_step;
  const double span = (cols - 1) * lon_step;
  if (south < -90.0 - 1e-9 || north > 90.0 + 1e-9 || span > 360.0 + 1e-9) return nullptr;
  const double west180 = std::remainder(west, 360.0) == 180.0 ? -180.0 : std::remainder(west, 360.0);
  ShiftGrid g{};
  g.south = south * kDegree;
  g.west = west180 * kDegree;
  g.lat_step = lat_step * kDegree;
  g.lon_step = lon_step * kDegree;
  g.rows = rows;
  g.cols = cols;
  g.lat_span = (rows - 1) * g.lat_step;
  g.lon_span = (cols - 1) * g.lon_step;
  g.parent = -1;
  GridSet *set = grid_set_allocate({format, 1, components}, &g);
  if (set == nullptr) return nullptr;
  double east = west180 + span;
  if (east > 180.0) east -= 360.0;
  set->extent = {west180, south, east, north, lon_step, lat_step};
  return set;
}

void grid_set_free(GridSet *set) {
  if (set != nullptr) ko_deallocate_rtn(set, 0, "ko_grid");
}

bool grid_set_shift(const GridSet &set, double lon, double lat, double out[3]) {
  double fx = 0.0, fy = 0.0;
  const ShiftGrid *g = find_grid(set, lon, lat, fx, fy);
  if (g == nullptr) return false;
  // The cell whose south-west node is (i, j); a point on the last row or
  // column uses the cell below or left of it.
  int32_t i = static_cast<int32_t>(fx);
  int32_t j = static_cast<int32_t>(fy);
  if (i > g->cols - 2) i = g->cols - 2;
  if (j > g->rows - 2) j = g->rows - 2;
  const double tx = fx - i, ty = fy - j;
  const double m00 = (1.0 - tx) * (1.0 - ty), m10 = tx * (1.0 - ty);
  const double m01 = (1.0 - tx) * ty, m11 = tx * ty;
  const int32_t comps = set.components;
  const float *v00 = g->values + (static_cast<std::size_t>(j) * g->cols + i) * comps;
  const float *v01 = v00 + static_cast<std::size_t>(g->cols) * comps;
  const float *v10 = v00 + comps;
  const float *v11 = v01 + comps;
  out[0] = (m00 * v00[0] + m10 * v10[0] + m01 * v01[0] + m11 * v11[0]) * kArcsec;
  out[1] = (m00 * v00[1] + m10 * v10[1] + m01 * v01[1] + m11 * v11[1]) * kArcsec;
  out[2] = comps > 2 ? m00 * v00[2] + m10 * v10[2] + m01 * v01[2] + m11 * v11[2] : 0.0;
  return true;
}

namespace {

// The shift at a point, or, for a point within one cell outside the
// top-level grids, at the nearest point of that grid: the inverse iteration
// starts from the target, which may lie just outside when its source lies
// just inside.
bool shift_near(const GridSet &set, double lon, double lat, double out[3]) {
  if (grid_set_shift(set, lon, lat, out)) return true;
  for (int32_t k = 0; k < set.top_count; ++k) {
    const ShiftGrid &g = set.grids[set.children[k]];
    double dx = std::remainder(lon - g.west, kTwoPi);
    if (dx < -g.lon_step) dx += kTwoPi;
    const double dy = lat - g.south;
    if (dx < -g.lon_step || dx > g.lon_span + g.lon_step || dy < -g.lat_step ||
        dy > g.lat_span + g.lat_step)
      continue;
    return grid_set_shift(set, g.west + std::clamp(dx, 0.0, g.lon_span),
                          g.south + std::clamp(dy, 0.0, g.lat_span), out);
  }
  return false;
}

// The source point whose shifted position is (lon, lat): x = target -
// shift(x), iterated from x = target - shift(target).  The shifts change by
// a few arc-seconds per cell, so every step gains about five digits.  The
// answer must itself lie in a grid, so that the forward shift of it gives
// the target back.
bool invert_shift(const GridSet &set, double lon, double lat, double &src_lon,
                  double &src_lat, double &dh) {
  double s[3];
  if (!shift_near(set, lon, lat, s)) return false;
  double x = lon - s[1], y = lat - s[0];
  for (int it = 0; it < 20; ++it) {
    if (!shift_near(set, x, y, s)) return false;
    const double nx = lon - s[1], ny = lat - s[0];
    const bool settled = std::fabs(nx - x) <= 1e-14 && std::fabs(ny - y) <= 1e-14;
    x = nx;
    y = ny;
    if (settled) {
      if (!grid_set_shift(set, x, y, s)) return false;
      src_lon = x;
      src_lat = y;
      dh = s[2];
      return true;
    }
  }
  return false;
}

}  // namespace

int grid_set_apply(const GridSet *set, bool inverse, int n, double *coord, double *z) {
  if (coord == nullptr || n < 0) return -1;
  if (set == nullptr) return 0;
  int converted = 0;
  for (int i = 0; i < n; ++i) {
    double *c = coord + 2 * i;
    if (!(std::isfinite(c[0]) && std::isfinite(c[1]))) continue;
    double lon, lat, dh;
    if (!inverse) {
      double s[3];
      if (!grid_set_shift(*set, c[0], c[1], s)) continue;
      lon = c[0] + s[1];
      lat = c[1] + s[0];
      dh = s[2];
    } else {
      if (!invert_shift(*set, c[0], c[1], lon, lat, dh)) continue;
      dh = -dh;
    }
    c[0] = wrap_pi(lon);
    c[1] = lat;
    if (z != nullptr && set->components > 2) z[i] += dh;
    ++converted;
  }
  return converted;
}

int grid_shift_forward(const MethodArgs &args, int n, double *coord, double *z) {
  return grid_set_apply(static_cast<const GridSet *>(args.data), false, n, coord, z);
}

int grid_shift_inverse(const MethodArgs &args, int n, double *coord, double *z) {
  return grid_set_apply(static_cast<const GridSet *>(args.data), true, n, coord, z);
}

}  // namespace ko
