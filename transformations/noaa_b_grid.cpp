// NOAA ".b" grids, the binary grid format of the NGS programs NADCON 5 and
// GEOCON (D. A. Smith et al., "NADCON 5.0", NOAA Technical Memorandum NOS
// NGS 63, 2017; the GEOCON v2 documentation describes the same format).
//
// A .b file is a Fortran sequential unformatted file: every record is framed
// by a 4-byte length before and after it.  The first record (44 bytes) is
// the header: the 8-byte reals GLAMN, GLOMN, DLA, DLO (south latitude, west
// longitude, spacings; degrees, longitude positive east, often 0..360) and
// the 4-byte integers NLA, NLO, IKIND (rows, columns, value kind).  Then one
// record per row, south to north, of NLO values from west to east; IKIND 1
// (4-byte reals) is the kind the transformation grids use and the only one
// accepted.  The NGS writes the files big-endian; the byte order is taken
// from the first record length, so little-endian copies read as well.
//
// A transformation is three such grids of one layout: latitude and
// longitude shifts in arc-seconds (positive north and east) and, optionally,
// ellipsoidal height shifts in metres.
#include "transformations/grid_file.h"
#include "transformations/grid_methods.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace ko {

namespace {

constexpr uint32_t kHeaderPayload = 44;

struct BHeader {
  bool big_endian;
  double south, west, lat_step, lon_step;
  int32_t rows, cols;
};

bool read_header(GridFile &file, BHeader &h) {
  unsigned char buf[kHeaderPayload + 8];
  if (!file.read(0, buf, sizeof buf)) return false;
  if (load_u32(buf, true) == kHeaderPayload) {
    h.big_endian = true;
  } else if (load_u32(buf, false) == kHeaderPayload) {
    h.big_endian = false;
  } else {
    return false;
  }
  if (load_u32(buf + 4 + kHeaderPayload, h.big_endian) != kHeaderPayload) return false;
  const unsigned char *p = buf + 4;
  h.south = load_f64(p, h.big_endian);
  h.west = load_f64(p + 8, h.big_endian);
  h.lat_step = load_f64(p + 16, h.big_endian);
  h.lon_step = load_f64(p + 24, h.big_endian);
  h.rows = load_i32(p + 32, h.big_endian);
  h.cols = load_i32(p + 36, h.big_endian);
  const int32_t kind = load_i32(p + 40, h.big_endian);
  if (kind != 1 || h.rows < 2 || h.cols < 2 || h.rows > (1 << 20) || h.cols > (1 << 20))
    return false;
  if (!(std::fabs(h.west) <= 720.0)) return false;  // also refuses NaN
  // Every row record, with its two length words, must be in the file.
  const uint64_t row_bytes = 4 * static_cast<uint64_t>(h.cols) + 8;
  const uint64_t header_bytes = kHeaderPayload + 8;
  return file.size() >= header_bytes &&
         static_cast<uint64_t>(h.rows) <= (file.size() - header_bytes) / row_bytes;
}

bool same_layout(const BHeader &a, const BHeader &b) {
  return a.south == b.south && a.west == b.west && a.lat_step == b.lat_step &&
         a.lon_step == b.lon_step && a.rows == b.rows && a.cols == b.cols;
}

// Reads the rows of one file into component comp of every node.
bool read_rows(GridFile &file, const BHeader &h, const GridSet &set, int comp) {
  constexpr std::size_t kChunk = 1024;
  unsigned char buf[4 * kChunk];
  const ShiftGrid &g = set.grids[0];
  const auto comps = static_cast<std::size_t>(set.components);
  const uint64_t payload = 4 * static_cast<uint64_t>(h.cols);
  uint64_t offset = kHeaderPayload + 8;
  for (int32_t r = 0; r < h.rows; ++r, offset += payload + 8) {
    unsigned char mark[4];
    if (!file.read(offset, mark, 4) || load_u32(mark, h.big_endian) != payload) return false;
    if (!file.read(offset + 4 + payload, mark, 4) || load_u32(mark, h.big_endian) != payload)
      return false;
    for (int32_t c0 = 0; c0 < h.cols; c0 += static_cast<int32_t>(kChunk)) {
      const auto len = static_cast<std::size_t>(std::min<int64_t>(h.cols - c0, kChunk));
      if (!file.read(offset + 4 + 4 * static_cast<uint64_t>(c0), buf, 4 * len)) return false;
      float *node = g.values + (static_cast<std::size_t>(r) * h.cols + c0) * comps + comp;
      for (std::size_t k = 0; k < len; ++k) {
        const float v = load_f32(buf + 4 * k, h.big_endian);
        if (!std::isfinite(v)) return false;
        node[comps * k] = v;
      }
    }
  }
  return true;
}

}  // namespace

GridSet *noaa_b_read(const char *lat_path, const char *lon_path, const char *eht_path) {
  GridFile lat(lat_path), lon(lon_path);
  BHeader hlat{}, hlon{}, heht{};
  if (!lat.ok() || !lon.ok() || !read_header(lat, hlat) || !read_header(lon, hlon) ||
      !same_layout(hlat, hlon))
    return nullptr;
  GridFile eht(eht_path);
  if (eht_path != nullptr && (!eht.ok() || !read_header(eht, heht) || !same_layout(hlat, heht)))
    return nullptr;
  const int32_t comps = eht_path != nullptr ? 3 : 2;
  OwnedGridSet set(grid_set_single(GridFormat::kNoaaB, hlat.south, hlat.west, hlat.lat_step,
                                   hlat.lon_step, hlat.rows, hlat.cols, comps));
  if (set == nullptr) return nullptr;
  if (!read_rows(lat, hlat, *set, 0) || !read_rows(lon, hlon, *set, 1)) return nullptr;
  if (comps == 3 && !read_rows(eht, heht, *set, 2)) return nullptr;
  return set.release();
}

bool noaa_b_files(const char *file, const char *dir, GridFiles &files) {
  // The latitude grid's name with its last "lat" replaced, or <file>.lat.b.
  const char *lat = nullptr;
  for (const char *p = std::strstr(file, "lat"); p != nullptr; p = std::strstr(p + 1, "lat"))
    lat = p;
  const char *kinds[3] = {"lat", "lon", "eht"};
  for (int i = 0; i < 3; ++i) {
    char name[kGridPathSize];
    const int n = lat != nullptr
                      ? std::snprintf(name, sizeof name, "%.*s%s%s", static_cast<int>(lat - file),
                                      file, kinds[i], lat + 3)
                      : std::snprintf(name, sizeof name, "%s.%s.b", file, kinds[i]);
    if (n < 0 || n >= kGridPathSize || !join_path(dir, name, files.path[i])) return false;
  }
  files.count = 3;
  files.required = 2;
  return true;
}

GridSet *noaa_b_open(const GridFiles &files, const ko_gcs_extent *) {
  const bool heights = grid_file_readable(files.path[2]);
  return noaa_b_read(files.path[0], files.path[1], heights ? files.path[2] : nullptr);
}

}  // namespace ko
