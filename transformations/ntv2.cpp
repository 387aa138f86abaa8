// NTv2 (EPSG 9615): latitude and longitude shifts interpolated bilinearly in
// a grid file of the National Transformation version 2 format (Natural
// Resources Canada, "NTv2 Developer's Guide", 1995).
//
// File layout: 16-byte records, an 8-byte keyword and an 8-byte value.  The
// overview header (NUM_OREC records, normally 11: NUM_OREC, NUM_SREC,
// NUM_FILE, GS_TYPE, VERSION, SYSTEM_F or DATUM_F, SYSTEM_T or DATUM_T,
// MAJOR_F, MINOR_F, MAJOR_T, MINOR_T), then NUM_FILE sub-grids, each a
// header of NUM_SREC records (SUB_NAME, PARENT, CREATED, UPDATED, S_LAT,
// N_LAT, E_LONG, W_LONG, LAT_INC, LONG_INC, GS_COUNT) followed by GS_COUNT
// node records of four 4-byte floats (latitude shift, longitude shift and
// their accuracies).  Integers are 4 bytes padded to 8; the byte order is
// the producer's, found from NUM_OREC.  Limits, increments and shifts are in
// GS_TYPE units (SECONDS, MINUTES or DEGREES) with longitudes positive west;
// nodes run from the south-east corner westwards along each row, rows
// northwards.  A sub-grid whose PARENT is not NONE refines the named grid.
//
// The header is parsed by keyword, so that either spelling of the datum
// records, and extra records, are accepted.  Every count and limit is
// checked against the others and against the file size before anything is
// allocated or read.
#include "transformations/grid_file.h"
#include "transformations/grid_methods.h"

#include <cmath>
#include <cstdio>
#include <cstring>

namespace ko {

namespace {

constexpr std::size_t kRecord = 16;
constexpr int32_t kMaxHeaderRecords = 64;
constexpr double kArcsec = kPi / 648000.0;
constexpr double kSecondsPerCircle = 1296000.0;

bool keyword_is(const unsigned char *rec, const char *keyword) {
  const std::size_t len = std::strlen(keyword);
  if (std::memcmp(rec, keyword, len) != 0) return false;
  for (std::size_t i = len; i < 8; ++i)
    if (rec[i] != ' ' && rec[i] != '\0') return false;
  return true;
}

// Finds keyword among count records; null when absent.
const unsigned char *find_record(const unsigned char *records, int32_t count,
                                 const char *keyword) {
  for (int32_t i = 0; i < count; ++i)
    if (keyword_is(records + kRecord * i, keyword)) return records + kRecord * i + 8;
  return nullptr;
}

struct Overview {
  bool big_endian;
  int32_t orec;
  int32_t srec;
  int32_t files;
  double unit;  // arc-seconds per file unit
};

// The overview header; false when it is missing or inconsistent.
bool read_overview(GridFile &file, Overview &ov) {
  unsigned char first[kRecord];
  if (!file.read(0, first, kRecord) || !keyword_is(first, "NUM_OREC")) return false;
  // The 4-byte count is 11 in either byte order; try both.
  for (bool big : {false, true}) {
    const int32_t v = load_i32(first + 8, big);
    if (v >= 3 && v <= kMaxHeaderRecords) {
      ov.big_endian = big;
      ov.orec = v;
      break;
    }
    if (big) return false;
  }
  unsigned char records[kRecord * kMaxHeaderRecords];
  if (!file.read(0, records, kRecord * static_cast<std::size_t>(ov.orec))) return false;
  const unsigned char *srec = find_record(records, ov.orec, "NUM_SREC");
  const unsigned char *files = find_record(records, ov.orec, "NUM_FILE");
  if (srec == nullptr || files == nullptr) return false;
  ov.srec = load_i32(srec, ov.big_endian);
  ov.files = load_i32(files, ov.big_endian);
  if (ov.srec < 11 || ov.srec > kMaxHeaderRecords || ov.files < 1) return false;
  ov.unit = 1.0;
  if (const unsigned char *type = find_record(records, ov.orec, "GS_TYPE")) {
    if (keyword_is(type, "SECONDS")) {
      ov.unit = 1.0;
    } else if (keyword_is(type, "MINUTES")) {
      ov.unit = 60.0;
    } else if (keyword_is(type, "DEGREES")) {
      ov.unit = 3600.0;
    } else {
      return false;
    }
  }
  return true;
}

// One sub-grid as the file describes it, in arc-seconds, longitudes
// positive west.
struct SubGrid {
  char name[8];
  char parent_name[8];
  double south, north, east, west, lat_inc, lon_inc;
  int32_t rows, cols;
  uint64_t data_offset;
  int32_t parent;     // index in file order, -1 at the top level
  int32_t new_index;  // index among the loaded grids, -1 when not loaded
};

// Number of nodes along one side, when span / step is a whole number.
bool node_count(double span, double step, int32_t &count) {
  const double cells = span / step;
  if (!(cells >= 1.0 && cells < 1e6)) return false;
  const double whole = std::round(cells);
  if (std::fabs(cells - whole) > 1e-6 * (1.0 + whole)) return false;
  count = static_cast<int32_t>(whole) + 1;
  return true;
}

bool read_subgrid_header(GridFile &file, const Overview &ov, uint64_t offset, SubGrid &sg) {
  unsigned char records[kRecord * kMaxHeaderRecords];
  if (!file.read(offset, records, kRecord * static_cast<std::size_t>(ov.srec))) return false;
  const char *keys[] = {"S_LAT", "N_LAT", "E_LONG", "W_LONG", "LAT_INC", "LONG_INC"};
  double vals[6];
  for (int k = 0; k < 6; ++k) {
    const unsigned char *v = find_record(records, ov.srec, keys[k]);
    if (v == nullptr) return false;
    vals[k] = load_f64(v, ov.big_endian) * ov.unit;
    if (!std::isfinite(vals[k])) return false;
  }
  const unsigned char *name = find_record(records, ov.srec, "SUB_NAME");
  const unsigned char *parent = find_record(records, ov.srec, "PARENT");
  const unsigned char *count = find_record(records, ov.srec, "GS_COUNT");
  if (name == nullptr || parent == nullptr || count == nullptr) return false;
  std::memcpy(sg.name, name, 8);
  std::memcpy(sg.parent_name, parent, 8);
  sg.south = vals[0];
  sg.north = vals[1];
  sg.east = vals[2];
  sg.west = vals[3];
  sg.lat_inc = vals[4];
  sg.lon_inc = vals[5];
  const double quarter = kSecondsPerCircle / 4.0;
  if (!(sg.lat_inc > 0.0 && sg.lon_inc > 0.0 && sg.south >= -quarter && sg.north <= quarter &&
        sg.west - sg.east <= kSecondsPerCircle && std::fabs(sg.east) <= kSecondsPerCircle &&
        std::fabs(sg.west) <= kSecondsPerCircle))
    return false;
  if (!node_count(sg.north - sg.south, sg.lat_inc, sg.rows) ||
      !node_count(sg.west - sg.east, sg.lon_inc, sg.cols))
    return false;
  const int64_t nodes = int64_t{sg.rows} * sg.cols;
  if (load_i32(count, ov.big_endian) != nodes) return false;
  sg.data_offset = offset + kRecord * static_cast<uint64_t>(ov.srec);
  // The node records must lie inside the file.
  return sg.data_offset <= file.size() &&
         static_cast<uint64_t>(nodes) <= (file.size() - sg.data_offset) / kRecord;
}

// Resolves PARENT names to indices; false for a name that no sub-grid has,
// or for a chain of parents that loops.
bool link_parents(SubGrid *subs, int32_t count) {
  for (int32_t i = 0; i < count; ++i) {
    subs[i].parent = -1;
    if (keyword_is(reinterpret_cast<const unsigned char *>(subs[i].parent_name), "NONE"))
      continue;
    for (int32_t j = 0; j < count && subs[i].parent < 0; ++j)
      if (j != i && std::memcmp(subs[j].name, subs[i].parent_name, 8) == 0) subs[i].parent = j;
    if (subs[i].parent < 0) return false;
  }
  for (int32_t i = 0; i < count; ++i) {
    int32_t p = subs[i].parent;
    for (int32_t steps = 0; p >= 0; ++steps, p = subs[p].parent)
      if (steps >= count) return false;
  }
  return true;
}

bool meets(const SubGrid &sg, const ko_gcs_extent *extent) {
  if (ko_gcs_extent_empty(extent)) return true;
  const double s = sg.south / 3600.0, n = sg.north / 3600.0;
  const double w = -sg.west / 3600.0, e = -sg.east / 3600.0;
  if (n < extent->south || s > extent->north) return false;
  if (extent->west <= extent->east) return !(e < extent->west || w > extent->east);
  return true;  // an extent across the antimeridian: keep everything
}

// Chooses the sub-grids to load (those meeting the extent whose ancestors
// are all loaded) and numbers them; returns how many.
int32_t choose(SubGrid *subs, int32_t count, const ko_gcs_extent *extent) {
  int32_t kept = 0;
  for (int32_t i = 0; i < count; ++i) {
    bool keep = meets(subs[i], extent);
    for (int32_t p = subs[i].parent; keep && p >= 0; p = subs[p].parent) keep = meets(subs[p], extent);
    subs[i].new_index = keep ? kept++ : -1;
  }
  return kept;
}

ShiftGrid describe(const SubGrid &sg, const SubGrid *subs) {
  ShiftGrid g{};
  g.south = sg.south * kArcsec;
  g.west = -sg.west * kArcsec;  // positive west in the file
  if (g.west < -kPi) g.west += kTwoPi;
  if (g.west >= kPi) g.west -= kTwoPi;
  g.lat_step = sg.lat_inc * kArcsec;
  g.lon_step = sg.lon_inc * kArcsec;
  g.rows = sg.rows;
  g.cols = sg.cols;
  g.lat_span = (g.rows - 1) * g.lat_step;
  g.lon_span = (g.cols - 1) * g.lon_step;
  g.parent = sg.parent >= 0 ? subs[sg.parent].new_index : -1;
  g.half_open = sg.parent >= 0 ? 1 : 0;
  return g;
}

// Reads one sub-grid's nodes into g.values: columns turned west to east,
// longitude shifts turned positive east.
bool read_nodes(GridFile &file, const Overview &ov, const SubGrid &sg, const ShiftGrid &g) {
  constexpr std::size_t kChunk = 256;
  unsigned char buf[kRecord * kChunk];
  float *values = g.values;
  const auto unit = static_cast<float>(ov.unit);
  const std::size_t nodes = static_cast<std::size_t>(sg.rows) * static_cast<std::size_t>(sg.cols);
  for (std::size_t first = 0; first < nodes; first += kChunk) {
    const std::size_t len = nodes - first < kChunk ? nodes - first : kChunk;
    if (!file.read(sg.data_offset + kRecord * first, buf, kRecord * len)) return false;
    for (std::size_t k = 0; k < len; ++k) {
      const std::size_t node = first + k;
      const std::size_t row = node / static_cast<std::size_t>(sg.cols);
      const std::size_t col = static_cast<std::size_t>(sg.cols) - 1 - node % static_cast<std::size_t>(sg.cols);
      float *v = values + 2 * (row * static_cast<std::size_t>(sg.cols) + col);
      v[0] = load_f32(buf + kRecord * k, ov.big_endian) * unit;
      v[1] = -load_f32(buf + kRecord * k + 4, ov.big_endian) * unit;
      if (!std::isfinite(v[0]) || !std::isfinite(v[1])) return false;
    }
  }
  return true;
}

void record_extent(GridSet &set, const SubGrid *subs, int32_t count) {
  bool first = true;
  for (int32_t i = 0; i < count; ++i) {
    const SubGrid &sg = subs[i];
    if (sg.new_index < 0 || sg.parent >= 0) continue;
    const double s = sg.south / 3600.0, n = sg.north / 3600.0;
    const double w = -sg.west / 3600.0, e = -sg.east / 3600.0;
    if (first) {
      set.extent = {w, s, e, n, sg.lon_inc / 3600.0, sg.lat_inc / 3600.0};
      first = false;
    } else {
      set.extent.west = std::fmin(set.extent.west, w);
      set.extent.east = std::fmax(set.extent.east, e);
      set.extent.south = std::fmin(set.extent.south, s);
      set.extent.north = std::fmax(set.extent.north, n);
    }
  }
}

}  // namespace

GridSet *ntv2_read(const char *path, const ko_gcs_extent *extent) {
  GridFile file(path);
  Overview ov{};
  if (!file.ok() || !read_overview(file, ov)) return nullptr;
  // Each sub-grid takes at least its header and four node records.
  const uint64_t smallest = kRecord * (static_cast<uint64_t>(ov.srec) + 4);
  if (static_cast<uint64_t>(ov.files) > file.size() / smallest) return nullptr;

  Owned<SubGrid> subs(alloc_array<SubGrid>(static_cast<std::size_t>(ov.files), "ko_ntv2"));
  if (subs == nullptr) return nullptr;
  uint64_t offset = kRecord * static_cast<uint64_t>(ov.orec);
  for (int32_t i = 0; i < ov.files; ++i) {
    SubGrid &sg = subs.get()[i];
    if (!read_subgrid_header(file, ov, offset, sg)) return nullptr;
    offset = sg.data_offset + kRecord * static_cast<uint64_t>(sg.rows) * static_cast<uint64_t>(sg.cols);
  }
  if (!link_parents(subs.get(), ov.files)) return nullptr;
  const int32_t kept = choose(subs.get(), ov.files, extent);
  if (kept == 0) return nullptr;

  Owned<ShiftGrid> grids(alloc_array<ShiftGrid>(static_cast<std::size_t>(kept), "ko_ntv2"));
  if (grids == nullptr) return nullptr;
  for (int32_t i = 0; i < ov.files; ++i) {
    const SubGrid &sg = subs.get()[i];
    if (sg.new_index >= 0) grids.get()[sg.new_index] = describe(sg, subs.get());
  }
  OwnedGridSet set(grid_set_allocate({GridFormat::kNtv2, kept, 2}, grids.get()));
  if (set == nullptr) return nullptr;
  for (int32_t i = 0; i < ov.files; ++i) {
    const SubGrid &sg = subs.get()[i];
    if (sg.new_index >= 0 && !read_nodes(file, ov, sg, set->grids[sg.new_index])) return nullptr;
  }
  record_extent(*set, subs.get(), ov.files);
  return set.release();
}

namespace {

bool has_extension(const char *file) {
  const char *slash = std::strrchr(file, '/');
  return std::strchr(slash != nullptr ? slash + 1 : file, '.') != nullptr;
}

bool ntv2_files(const char *file, const char *dir, GridFiles &files) {
  char name[kGridPathSize];
  const int len = std::snprintf(name, sizeof name, has_extension(file) ? "%s" : "%s.gsb", file);
  if (len < 0 || len >= kGridPathSize || !join_path(dir, name, files.path[0])) return false;
  files.count = files.required = 1;
  return true;
}

GridSet *ntv2_open(const GridFiles &files, const ko_gcs_extent *extent) {
  return ntv2_read(files.path[0], extent);
}

}  // namespace

const GridFormatSpec kNtv2Format{"ntv2", ntv2_files, ntv2_open};

}  // namespace ko
