// NADCON (EPSG 9613): latitude and longitude shifts interpolated bilinearly
// in a pair of binary NADCON grids, the .las file (latitude shifts) and the
// .los file (longitude shifts) (NOAA Technical Memorandum NOS NGS-50,
// Dewhurst 1990; the HARN/HPGN grids use the same format).
//
// Each file is a sequence of records of 4 (NC + 1) bytes.  The first holds
// the header: a 56-character identification, an 8-character program name,
// then the 4-byte integers NC, NR, NZ and the 4-byte floats XMIN, DX, YMIN,
// DY, ANGLE (degrees; XMIN is the western longitude, positive east).  Record
// r + 1 (r = 0 for the southern row) holds one 4-byte word that carries no
// data, then the NC values of row r from west to east, in arc-seconds;
// longitude shifts are positive west, as everywhere in NADCON.  The files
// are written in the producer's byte order, found from NC and NR.
#include "transformations/grid_file.h"
#include "transformations/grid_methods.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace ko {

namespace {

constexpr std::size_t kHeaderBytes = 96;

struct NadconHeader {
  bool big_endian;
  int32_t cols, rows;
  double xmin, dx, ymin, dy;
  uint64_t record;  // bytes per record
};

bool parse_header(const unsigned char *h, bool big, uint64_t file_size, NadconHeader &out) {
  out.big_endian = big;
  out.cols = load_i32(h + 64, big);
  out.rows = load_i32(h + 68, big);
  out.xmin = load_f32(h + 76, big);
  out.dx = load_f32(h + 80, big);
  out.ymin = load_f32(h + 84, big);
  out.dy = load_f32(h + 88, big);
  if (out.cols < 2 || out.rows < 2 || out.cols > (1 << 20) || out.rows > (1 << 20)) return false;
  out.record = 4 * (static_cast<uint64_t>(out.cols) + 1);
  // The header must fit its record and every row must be in the file.
  return out.record >= kHeaderBytes &&
         (static_cast<uint64_t>(out.rows) + 1) <= file_size / out.record &&
         std::isfinite(out.xmin) && std::isfinite(out.ymin) && out.dx > 0.0 && out.dy > 0.0 &&
         std::isfinite(out.dx) && std::isfinite(out.dy);
}

bool read_header(GridFile &file, NadconHeader &out) {
  unsigned char h[kHeaderBytes];
  if (!file.read(0, h, sizeof h)) return false;
  return parse_header(h, false, file.size(), out) || parse_header(h, true, file.size(), out);
}

bool same_grid(const NadconHeader &a, const NadconHeader &b) {
  return a.cols == b.cols && a.rows == b.rows && a.xmin == b.xmin && a.dx == b.dx &&
         a.ymin == b.ymin && a.dy == b.dy;
}

// Reads one file's values into component `comp` of every node, times sign.
bool read_values(GridFile &file, const NadconHeader &h, ShiftGrid &g, int comp, float sign) {
  constexpr std::size_t kChunk = 1024;
  unsigned char buf[4 * kChunk];
  for (int32_t r = 0; r < h.rows; ++r) {
    const uint64_t row_start = (static_cast<uint64_t>(r) + 1) * h.record + 4;
    for (int32_t c0 = 0; c0 < h.cols; c0 += static_cast<int32_t>(kChunk)) {
      const auto len = static_cast<std::size_t>(std::min<int64_t>(h.cols - c0, kChunk));
      if (!file.read(row_start + 4 * static_cast<uint64_t>(c0), buf, 4 * len)) return false;
      float *node = g.values + 2 * (static_cast<std::size_t>(r) * h.cols + c0) + comp;
      for (std::size_t k = 0; k < len; ++k) {
        const float v = load_f32(buf + 4 * k, h.big_endian);
        if (!std::isfinite(v)) return false;
        node[2 * k] = sign * v;
      }
    }
  }
  return true;
}

}  // namespace

GridSet *nadcon_read(const char *las_path, const char *los_path) {
  GridFile las(las_path), los(los_path);
  NadconHeader hlat{}, hlon{};
  if (!las.ok() || !los.ok() || !read_header(las, hlat) || !read_header(los, hlon) ||
      !same_grid(hlat, hlon))
    return nullptr;
  OwnedGridSet set(grid_set_single(GridFormat::kNadcon, hlat.ymin, hlat.xmin, hlat.dy, hlat.dx,
                                   hlat.rows, hlat.cols, 2));
  if (set == nullptr) return nullptr;
  ShiftGrid &g = set->grids[0];
  if (!read_values(las, hlat, g, 0, 1.0f) || !read_values(los, hlon, g, 1, -1.0f)) return nullptr;
  return set.release();
}

namespace {

bool ends_with_i(const char *text, std::size_t len, const char *tail) {
  const std::size_t n = std::strlen(tail);
  return len >= n && ko_strncmp_i(text + len - n, tail, static_cast<int>(n)) == 0;
}

// <file>.las and <file>.los, a ".las" or ".los" ending of <file> dropped.
bool nadcon_files(const char *file, const char *dir, GridFiles &files) {
  std::size_t len = std::strlen(file);
  if (ends_with_i(file, len, ".las") || ends_with_i(file, len, ".los")) len -= 4;
  if (len == 0 || len >= kGridPathSize) return false;
  const char *ext[2] = {".las", ".los"};
  for (int i = 0; i < 2; ++i) {
    char name[kGridPathSize];
    const int n = std::snprintf(name, sizeof name, "%.*s%s", static_cast<int>(len), file, ext[i]);
    if (n < 0 || n >= kGridPathSize || !join_path(dir, name, files.path[i])) return false;
  }
  files.count = files.required = 2;
  return true;
}

GridSet *nadcon_open(const GridFiles &files, const ko_gcs_extent *) {
  return nadcon_read(files.path[0], files.path[1]);
}

}  // namespace

const GridFormatSpec kNadconFormat{"nadcon", nadcon_files, nadcon_open};

}  // namespace ko
