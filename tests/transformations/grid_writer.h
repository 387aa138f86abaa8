// Writers of small grid files in the documented binary formats (NTv2,
// NADCON .las/.los, NOAA .b), byte by byte, and hand bilinear
// interpolation on the written nodes, for the grid tests.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace ko::test {

using Bytes = std::vector<unsigned char>;

class ByteWriter {
 public:
  explicit ByteWriter(bool big_endian) : big_(big_endian) {}
  Bytes &bytes() { return out_; }
  void raw(const void *p, std::size_t n) {
    const auto *b = static_cast<const unsigned char *>(p);
    out_.insert(out_.end(), b, b + n);
  }
  void text(const char *s, std::size_t width) {
    std::string t(s);
    t.resize(width, ' ');
    raw(t.data(), width);
  }
  void zeros(std::size_t n) { out_.insert(out_.end(), n, 0); }
  template <class T>
  void num(T v) {
    unsigned char b[sizeof(T)];
    std::memcpy(b, &v, sizeof(T));
    if (big_) std::reverse(b, b + sizeof(T));  // the tests run on little-endian hosts
    raw(b, sizeof(T));
  }

 private:
  bool big_;
  Bytes out_;
};

// A file in a directory private to this test process, removed with it.
class TempDir {
 public:
  TempDir() {
    path_ = std::filesystem::temp_directory_path() /
            ("ko_grid_test_" + std::to_string(::getpid()) + "_" + std::to_string(counter()++));
    std::filesystem::create_directories(path_);
  }
  ~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  std::string write(const std::string &name, const Bytes &bytes) const {
    const std::string file = (path_ / name).string();
    std::FILE *f = std::fopen(file.c_str(), "wb");
    if (f != nullptr) {
      if (!bytes.empty()) std::fwrite(bytes.data(), 1, bytes.size(), f);
      std::fclose(f);
    }
    return file;
  }
  std::string dir() const { return path_.string(); }

 private:
  static int &counter() {
    static int n = 0;
    return n;
  }
  std::filesystem::path path_;
};

// ---------------------------------------------------------------------------
// NTv2.  Limits in arc-seconds, longitudes positive west; value(row, col, k)
// gives node (row from the south, col from the east) component k (0
// latitude shift, 1 longitude shift positive west, arc-seconds).
struct NtSub {
  std::string name, parent;
  double s, n, e, w, dlat, dlon;
  std::function<float(int, int, int)> value;
  int rows() const { return static_cast<int>(std::lround((n - s) / dlat)) + 1; }
  int cols() const { return static_cast<int>(std::lround((w - e) / dlon)) + 1; }
};

struct NtOptions {
  bool big_endian = false;
  bool datum_keywords = false;  // DATUM_F/DATUM_T instead of SYSTEM_F/SYSTEM_T
  const char *gs_type = "SECONDS";
};

inline Bytes ntv2_bytes(const std::vector<NtSub> &subs, NtOptions opt = {}) {
  ByteWriter w(opt.big_endian);
  auto int_rec = [&](const char *key, int32_t v) {
    w.text(key, 8);
    w.num(v);
    w.zeros(4);
  };
  auto dbl_rec = [&](const char *key, double v) {
    w.text(key, 8);
    w.num(v);
  };
  auto txt_rec = [&](const char *key, const char *v) {
    w.text(key, 8);
    w.text(v, 8);
  };
  int_rec("NUM_OREC", 11);
  int_rec("NUM_SREC", 11);
  int_rec("NUM_FILE", static_cast<int32_t>(subs.size()));
  txt_rec("GS_TYPE", opt.gs_type);
  txt_rec("VERSION", "NTv2.0");
  txt_rec(opt.datum_keywords ? "DATUM_F" : "SYSTEM_F", "FROM");
  txt_rec(opt.datum_keywords ? "DATUM_T" : "SYSTEM_T", "TO");
  dbl_rec("MAJOR_F", 6378137.0);
  dbl_rec("MINOR_F", 6356752.314);
  dbl_rec("MAJOR_T", 6378137.0);
  dbl_rec("MINOR_T", 6356752.314);
  for (const NtSub &sg : subs) {
    txt_rec("SUB_NAME", sg.name.c_str());
    txt_rec("PARENT", sg.parent.c_str());
    txt_rec("CREATED", "20240101");
    txt_rec("UPDATED", "20240101");
    dbl_rec("S_LAT", sg.s);
    dbl_rec("N_LAT", sg.n);
    dbl_rec("E_LONG", sg.e);
    dbl_rec("W_LONG", sg.w);
    dbl_rec("LAT_INC", sg.dlat);
    dbl_rec("LONG_INC", sg.dlon);
    int_rec("GS_COUNT", sg.rows() * sg.cols());
    for (int r = 0; r < sg.rows(); ++r)
      for (int c = 0; c < sg.cols(); ++c) {
        w.num(sg.value(r, c, 0));
        w.num(sg.value(r, c, 1));
        w.num(0.01f);
        w.num(0.01f);
      }
  }
  txt_rec("END", "");
  return w.bytes();
}

// Hand bilinear interpolation in a sub-grid, in the file's own terms.
// lon, lat in degrees east; returns false outside.  out: latitude shift
// and longitude shift positive west, arc-seconds.
inline bool ntv2_expected(const NtSub &sg, double lon, double lat, double out[2]) {
  const double x = (-lon * 3600.0 - sg.e) / sg.dlon;  // columns counted from the east
  const double y = (lat * 3600.0 - sg.s) / sg.dlat;
  if (x < 0 || y < 0 || x > sg.cols() - 1 || y > sg.rows() - 1) return false;
  const int c = std::min(static_cast<int>(x), sg.cols() - 2);
  const int r = std::min(static_cast<int>(y), sg.rows() - 2);
  const double tx = x - c, ty = y - r;
  for (int k = 0; k < 2; ++k) {
    const double a = sg.value(r, c, k), b = sg.value(r, c + 1, k);
    const double d = sg.value(r + 1, c, k), e = sg.value(r + 1, c + 1, k);
    out[k] = a + (b - a) * tx + (d - a) * ty + (a - b - d + e) * tx * ty;
  }
  return true;
}

// ---------------------------------------------------------------------------
// NADCON .las/.los: rows from the south, columns from the west, degrees.
struct NadconGrid {
  int cols, rows;
  float xmin, dx, ymin, dy;
  std::function<float(int, int)> value;  // (row, col)
};

inline Bytes nadcon_bytes(const NadconGrid &g, bool big_endian = false) {
  ByteWriter w(big_endian);
  const std::size_t record = 4 * (static_cast<std::size_t>(g.cols) + 1);
  w.text("NADCON EXTRACTED REGION", 56);
  w.text("NADGRD", 8);
  w.num(static_cast<int32_t>(g.cols));
  w.num(static_cast<int32_t>(g.rows));
  w.num(int32_t{1});
  w.num(g.xmin);
  w.num(g.dx);
  w.num(g.ymin);
  w.num(g.dy);
  w.num(0.0f);
  w.zeros(record - 96);
  for (int r = 0; r < g.rows; ++r) {
    w.num(int32_t{0});
    for (int c = 0; c < g.cols; ++c) w.num(g.value(r, c));
  }
  return w.bytes();
}

// Hand bilinear interpolation in a grid with nodes (row, col) at
// (south + row × dlat, west + col × dlon), degrees.
inline bool bilinear_expected(double west, double south, double dlon, double dlat, int cols,
                              int rows, const std::function<double(int, int)> &value,
                              double lon, double lat, double &out) {
  const double x = (lon - west) / dlon, y = (lat - south) / dlat;
  if (x < 0 || y < 0 || x > cols - 1 || y > rows - 1) return false;
  const int c = std::min(static_cast<int>(x), cols - 2);
  const int r = std::min(static_cast<int>(y), rows - 2);
  const double tx = x - c, ty = y - r;
  const double a = value(r, c), b = value(r, c + 1), d = value(r + 1, c), e = value(r + 1, c + 1);
  out = a + (b - a) * tx + (d - a) * ty + (a - b - d + e) * tx * ty;
  return true;
}

// ---------------------------------------------------------------------------
// NOAA .b: Fortran sequential records, big-endian by default.
struct BGrid {
  double south, west, dlat, dlon;
  int rows, cols;
  int kind = 1;
  std::function<float(int, int)> value;  // (row, col)
};

inline Bytes noaa_b_bytes(const BGrid &g, bool big_endian = true) {
  ByteWriter w(big_endian);
  w.num(int32_t{44});
  w.num(g.south);
  w.num(g.west);
  w.num(g.dlat);
  w.num(g.dlon);
  w.num(static_cast<int32_t>(g.rows));
  w.num(static_cast<int32_t>(g.cols));
  w.num(static_cast<int32_t>(g.kind));
  w.num(int32_t{44});
  for (int r = 0; r < g.rows; ++r) {
    w.num(static_cast<int32_t>(4 * g.cols));
    for (int c = 0; c < g.cols; ++c) w.num(g.value(r, c));
    w.num(static_cast<int32_t>(4 * g.cols));
  }
  return w.bytes();
}

}  // namespace ko::test
