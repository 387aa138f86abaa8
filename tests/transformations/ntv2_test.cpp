// NTv2: the real grid files that PROJ ships, against PROJ's hgridshift;
// small files written here (several sub-grids, both byte orders, both
// spellings of the datum records) against bilinear interpolation by hand;
// and files that are truncated or describe themselves falsely.
#include "tests/transformations/grid_writer.h"
#include "tests/transformations/oracle.h"
#include "transformations/grid_set.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace {

using ko::test::kArcsecRad;
using ko::test::kDeg;
using ko::test::NtSub;

ko::OwnedGridSet read(const std::string &path, const ko_gcs_extent *extent = nullptr) {
  return ko::OwnedGridSet(ko::ntv2_read(path.c_str(), extent));
}

int shift(const ko::GridSet *set, bool inverse, std::vector<double> &pts) {
  ko::MethodArgs a;
  a.data = set;
  const int n = static_cast<int>(pts.size() / 2);
  return inverse ? ko::grid_shift_inverse(a, n, pts.data(), nullptr)
                 : ko::grid_shift_forward(a, n, pts.data(), nullptr);
}

const char *const kRealGrids[] = {"BETA2007.gsb",      "ntf_r93.gsb",  "nzgd2kgrid0005.gsb",
                                  "CHENYX06.gsb",      "CHENYX06a.gsb", "CHENYX06_etrs.gsb"};

std::string real_grid(const char *name) { return std::string("/usr/share/proj/") + name; }

#ifdef KO_HAVE_PROJ
TEST(Ntv2RealFiles, ExtentMatchesProjGridInfo) {
  for (const char *name : kRealGrids) {
    const std::string path = real_grid(name);
    auto set = read(path);
    ASSERT_NE(set, nullptr) << name;
    proj_log_level(nullptr, PJ_LOG_NONE);  // it tries the vertical formats first
    const PJ_GRID_INFO info = proj_grid_info(path.c_str());
    const double deg = 180.0 / M_PI;
    EXPECT_NEAR(set->extent.west, info.lowerleft.lam * deg, 1e-9) << name;
    EXPECT_NEAR(set->extent.south, info.lowerleft.phi * deg, 1e-9) << name;
    EXPECT_NEAR(set->extent.east, info.upperright.lam * deg, 1e-9) << name;
    EXPECT_NEAR(set->extent.north, info.upperright.phi * deg, 1e-9) << name;
    EXPECT_NEAR(set->extent.lon_step, info.cs_lon * deg, 1e-12) << name;
    EXPECT_NEAR(set->extent.lat_step, info.cs_lat * deg, 1e-12) << name;
    EXPECT_EQ(set->grids[0].cols, info.n_lon) << name;
    EXPECT_EQ(set->grids[0].rows, info.n_lat) << name;
  }
}

// Points over the grid (its edges included), and random points.
std::vector<double> points_over(const ko_gcs_extent &e, unsigned seed) {
  auto deg = ko::test::box_points(e.west, e.south, e.east, e.north, 25);
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<double> lon(e.west, e.east), lat(e.south, e.north);
  for (int i = 0; i < 400; ++i) {
    deg.push_back(lon(rng));
    deg.push_back(lat(rng));
  }
  return deg;
}

TEST(Ntv2RealFiles, ShiftsMatchProjHgridshift) {
  for (const char *name : kRealGrids) {
    const std::string path = real_grid(name);
    auto set = read(path);
    ASSERT_NE(set, nullptr) << name;
    const std::string def = "+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad "
                            "+step +proj=hgridshift +grids=" + path +
                            " +step +proj=unitconvert +xy_in=rad +xy_out=deg";
    ko::test::ProjOp proj(def.c_str());
    ASSERT_TRUE(proj.ok()) << def;
    for (bool inverse : {false, true}) {
      const auto deg = points_over(set->extent, 11);
      auto pts = ko::test::to_radians(deg);
      const auto before = pts;
      int compared = 0;
      for (std::size_t i = 0; i < deg.size() / 2; ++i) {
        std::vector<double> one{pts[2 * i], pts[2 * i + 1]};
        const bool converted = shift(set.get(), inverse, one) == 1;
        pts[2 * i] = one[0];
        pts[2 * i + 1] = one[1];
        const PJ_COORD r = proj.trans(inverse ? PJ_INV : PJ_FWD, deg[2 * i], deg[2 * i + 1]);
        if (r.v[0] == HUGE_VAL) {
          // PROJ finds no grid here; neither may we.
          EXPECT_FALSE(converted) << name;
          EXPECT_EQ(pts[2 * i], before[2 * i]) << name;
          continue;
        }
        if (inverse && !converted) {
          // Near an edge PROJ stops iterating when it leaves the grid and
          // returns where it got to; we convert only points whose source
          // lies in the grid.  So PROJ's answer must lie outside it.
          double s[3];
          EXPECT_FALSE(ko::grid_set_shift(*set, r.v[0] * kDeg, r.v[1] * kDeg, s))
              << name << " inverse refused at " << deg[2 * i] << ", " << deg[2 * i + 1];
          continue;
        }
        ++compared;
        // Within 1e-6 arc-second of PROJ in both coordinates.
        EXPECT_NEAR(std::remainder(pts[2 * i] - r.v[0] * kDeg, 2 * M_PI), 0.0, 1e-6 * kArcsecRad)
            << name << (inverse ? " inverse" : " forward") << " at " << deg[2 * i] << ", "
            << deg[2 * i + 1];
        EXPECT_NEAR(pts[2 * i + 1], r.v[1] * kDeg, 1e-6 * kArcsecRad)
            << name << (inverse ? " inverse" : " forward");
      }
      EXPECT_GT(compared, 500) << name;
    }
  }
}
#endif

TEST(Ntv2RealFiles, ForwardThenInverseReturnsTheStart) {
  for (const char *name : kRealGrids) {
    auto set = read(real_grid(name));
    ASSERT_NE(set, nullptr) << name;
    const ko_gcs_extent &e = set->extent;
    // Inside by a cell, so that neither direction leaves the grid.
    auto pts = ko::test::to_radians(ko::test::box_points(
        e.west + e.lon_step, e.south + e.lat_step, e.east - e.lon_step, e.north - e.lat_step, 15));
    const auto start = pts;
    const int n = static_cast<int>(pts.size() / 2);
    ASSERT_EQ(shift(set.get(), false, pts), n) << name;
    ASSERT_EQ(shift(set.get(), true, pts), n) << name;
    for (std::size_t i = 0; i < pts.size(); ++i) EXPECT_NEAR(pts[i], start[i], 1e-9 * kDeg) << name;
  }
}

// ---------------------------------------------------------------------------
// Written files.  A parent over 10°..12°E, 45°..47°N at 0.5°, and a child
// refining 10.5°..11.5°E, 45.5°..46.5°N at 0.125°, with different node
// functions so that the grid a value came from shows.
float parent_value(int r, int c, int k) {
  return k == 0 ? 1.5f + 0.25f * r + 0.0625f * c * c : -2.0f + 0.5f * c - 0.125f * r * r;
}
float child_value(int r, int c, int k) {
  return k == 0 ? 3.0f + 0.1f * r * c : 0.75f - 0.05f * c + 0.02f * r;
}

std::vector<NtSub> two_level() {
  return {
      {"PARENT", "NONE", 45 * 3600.0, 47 * 3600.0, -12 * 3600.0, -10 * 3600.0, 1800, 1800,
       parent_value},
      {"CHILD", "PARENT", 45.5 * 3600, 46.5 * 3600, -11.5 * 3600, -10.5 * 3600, 450, 450,
       child_value},
  };
}

// Expected (lon, lat) in degrees after the forward shift, from the given
// sub-grid, by hand.
void expect_shift_from(const NtSub &sg, double lon, double lat, const std::vector<double> &got,
                       std::size_t i, double tol_arcsec = 1e-9) {
  double s[2];
  ASSERT_TRUE(ko::test::ntv2_expected(sg, lon, lat, s)) << lon << " " << lat;
  EXPECT_NEAR(got[2 * i], (lon - s[1] / 3600.0) * kDeg, tol_arcsec * kArcsecRad) << sg.name << " " << lon << " " << lat;
  EXPECT_NEAR(got[2 * i + 1], (lat + s[0] / 3600.0) * kDeg, tol_arcsec * kArcsecRad) << sg.name << " " << lon << " " << lat;
}

TEST(Ntv2Written, ChildGridRefinesItsParent) {
  ko::test::TempDir dir;
  const auto subs = two_level();
  for (ko::test::NtOptions opt :
       {ko::test::NtOptions{}, ko::test::NtOptions{.big_endian = true},
        ko::test::NtOptions{.datum_keywords = true},
        ko::test::NtOptions{.big_endian = true, .datum_keywords = true}}) {
    auto set = read(dir.write("two.gsb", ko::test::ntv2_bytes(subs, opt)));
    ASSERT_NE(set, nullptr) << opt.big_endian << opt.datum_keywords;
    EXPECT_EQ(set->count, 2);
    EXPECT_EQ(set->top_count, 1);
    const ko_gcs_extent want{10, 45, 12, 47, 0.5, 0.5};
    EXPECT_TRUE(ko_gcs_extent_eq(&set->extent, &want));
    struct P {
      double lon, lat;
      int from;  // 0 parent, 1 child
    } cases[] = {
        {10.1, 45.2, 0},   {11.9, 46.9, 0},  {10.0, 45.0, 0},  {12.0, 47.0, 0},
        {10.77, 45.61, 1}, {11.3, 46.2, 1},  {11.5, 45.5, 1},  // child's east and south edges
        {10.5, 46.0, 0},   {11.0, 46.5, 0},                     // child's west and north edges
        {10.6, 46.49, 1},
    };
    std::vector<double> pts;
    for (const P &p : cases) {
      pts.push_back(p.lon * kDeg);
      pts.push_back(p.lat * kDeg);
    }
    ASSERT_EQ(shift(set.get(), false, pts), static_cast<int>(std::size(cases)));
    for (std::size_t i = 0; i < std::size(cases); ++i)
      expect_shift_from(subs[cases[i].from], cases[i].lon, cases[i].lat, pts, i);
  }
}

#ifdef KO_HAVE_PROJ
TEST(Ntv2Written, ProjAgreesInsideParentAndChild) {
  ko::test::TempDir dir;
  const std::string path = dir.write("two.gsb", ko::test::ntv2_bytes(two_level()));
  auto set = read(path);
  ASSERT_NE(set, nullptr);
  const std::string def = "+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad "
                          "+step +proj=hgridshift +grids=" + path +
                          " +step +proj=unitconvert +xy_in=rad +xy_out=deg";
  ko::test::ProjOp proj(def.c_str());
  ASSERT_TRUE(proj.ok());
  std::mt19937_64 rng(3);
  std::uniform_real_distribution<double> lon(10.01, 11.99), lat(45.01, 46.99);
  for (int i = 0; i < 2000; ++i) {
    std::vector<double> pt{lon(rng), lat(rng)};
    const PJ_COORD r = proj.trans(PJ_FWD, pt[0], pt[1]);
    pt[0] *= kDeg;
    pt[1] *= kDeg;
    ASSERT_EQ(shift(set.get(), false, pt), 1);
    EXPECT_NEAR(pt[0], r.v[0] * kDeg, 1e-6 * kArcsecRad);
    EXPECT_NEAR(pt[1], r.v[1] * kDeg, 1e-6 * kArcsecRad);
  }
}
#endif

TEST(Ntv2Written, MinutesAndDegreesUnits) {
  ko::test::TempDir dir;
  for (auto [type, unit] : {std::pair{"MINUTES", 60.0}, std::pair{"DEGREES", 3600.0}}) {
    auto scaled = two_level();
    for (NtSub &sg : scaled) {
      for (double *v : {&sg.s, &sg.n, &sg.e, &sg.w, &sg.dlat, &sg.dlon}) *v /= unit;
    }
    scaled[0].value = [unit](int r, int c, int k) {
      return static_cast<float>(parent_value(r, c, k) / unit);
    };
    auto set = read(dir.write("u.gsb", ko::test::ntv2_bytes(scaled, {.gs_type = type})));
    ASSERT_NE(set, nullptr) << type;
    std::vector<double> pts{10.2 * kDeg, 46.8 * kDeg};
    ASSERT_EQ(shift(set.get(), false, pts), 1);
    // The shifts pass through float in the file's unit: 1e-7 relative.
    expect_shift_from(two_level()[0], 10.2, 46.8, pts, 0, 1e-6);
  }
}

TEST(Ntv2Written, ExtentLimitsTheSubGridsLoaded) {
  ko::test::TempDir dir;
  auto subs = two_level();
  subs.push_back({"OTHER", "NONE", 50 * 3600.0, 51 * 3600.0, -21 * 3600.0, -20 * 3600.0, 1800,
                  1800, parent_value});
  const std::string path = dir.write("three.gsb", ko::test::ntv2_bytes(subs));
  auto all = read(path);
  ASSERT_NE(all, nullptr);
  EXPECT_EQ(all->count, 3);
  const ko_gcs_extent union_box{10, 45, 21, 51, 0.5, 0.5};
  EXPECT_TRUE(ko_gcs_extent_eq(&all->extent, &union_box));
  const ko_gcs_extent near_other{19.0, 49.0, 22.0, 52.0, 0, 0};
  auto some = read(path, &near_other);
  ASSERT_NE(some, nullptr);
  EXPECT_EQ(some->count, 1);
  const ko_gcs_extent nowhere{100, -10, 101, -9, 0, 0};
  EXPECT_EQ(read(path, &nowhere), nullptr);
}

TEST(Ntv2Written, InverseIteratesBackToTheStart) {
  ko::test::TempDir dir;
  auto set = read(dir.write("two.gsb", ko::test::ntv2_bytes(two_level())));
  ASSERT_NE(set, nullptr);
  auto pts = ko::test::to_radians(ko::test::box_points(10.01, 45.01, 11.99, 46.99, 21));
  const auto start = pts;
  const int n = static_cast<int>(pts.size() / 2);
  ASSERT_EQ(shift(set.get(), false, pts), n);
  ASSERT_EQ(shift(set.get(), true, pts), n);
  for (std::size_t i = 0; i < pts.size(); ++i) EXPECT_NEAR(pts[i], start[i], 1e-12);
}

TEST(Ntv2Written, PointsOutsideOrNotFiniteAreLeftAlone) {
  ko::test::TempDir dir;
  auto set = read(dir.write("two.gsb", ko::test::ntv2_bytes(two_level())));
  ASSERT_NE(set, nullptr);
  std::vector<double> pts{9.9 * kDeg, 46 * kDeg,  11 * kDeg, 47.01 * kDeg, NAN,       46 * kDeg,
                          11 * kDeg,  INFINITY,   11 * kDeg, 46 * kDeg,    -INFINITY, NAN};
  const auto before = pts;
  for (bool inverse : {false, true}) {
    auto work = before;
    EXPECT_EQ(shift(set.get(), inverse, work), 1);
    for (std::size_t i = 0; i < 8; ++i)
      EXPECT_TRUE(std::memcmp(&work[i], &before[i], sizeof(double)) == 0) << i;
    EXPECT_NE(work[8], before[8]);
  }
  EXPECT_EQ(shift(nullptr, false, pts), 0);
  ko::MethodArgs a;
  a.data = set.get();
  EXPECT_EQ(ko::grid_shift_forward(a, -1, pts.data(), nullptr), -1);
  EXPECT_EQ(ko::grid_shift_forward(a, 2, nullptr, nullptr), -1);
}

// ---------------------------------------------------------------------------
// Damaged files.

TEST(Ntv2Damaged, EveryTruncationIsRefused) {
  ko::test::TempDir dir;
  const auto bytes = ko::test::ntv2_bytes(two_level());
  // The last 16 bytes are the END record, which a reader need not see.
  for (std::size_t len = 0; len + 16 < bytes.size(); len += (len < 400 ? 1 : 13)) {
    const ko::test::Bytes cut(bytes.begin(), bytes.begin() + static_cast<long>(len));
    EXPECT_EQ(read(dir.write("cut.gsb", cut)), nullptr) << len;
  }
  EXPECT_NE(read(dir.write("whole.gsb", bytes)), nullptr);
}

// Overwrites the 8-byte value of the first record named key at or after
// record `from`.
template <class T>
void patch(ko::test::Bytes &b, const char *key, T value, std::size_t from = 0) {
  std::string k(key);
  k.resize(8, ' ');
  for (std::size_t off = 16 * from; off + 16 <= b.size(); off += 16) {
    if (std::memcmp(&b[off], k.data(), 8) == 0) {
      std::memset(&b[off + 8], 0, 8);
      std::memcpy(&b[off + 8], &value, sizeof(T));
      return;
    }
  }
  FAIL() << "no record " << key;
}

TEST(Ntv2Damaged, LyingHeadersAreRefused) {
  ko::test::TempDir dir;
  const auto good = ko::test::ntv2_bytes(two_level());
  struct Lie {
    const char *what;
    std::function<void(ko::test::Bytes &)> apply;
  } lies[] = {
      {"NUM_OREC absurd", [](auto &b) { patch(b, "NUM_OREC", int32_t{100000}); }},
      {"NUM_SREC too small", [](auto &b) { patch(b, "NUM_SREC", int32_t{3}); }},
      {"NUM_FILE beyond the file", [](auto &b) { patch(b, "NUM_FILE", int32_t{3}); }},
      {"NUM_FILE huge", [](auto &b) { patch(b, "NUM_FILE", int32_t{2000000000}); }},
      {"NUM_FILE zero", [](auto &b) { patch(b, "NUM_FILE", int32_t{0}); }},
      {"GS_TYPE unknown", [](auto &b) { std::memcpy(&b[48 + 8], "RADIANS ", 8); }},
      {"GS_COUNT wrong", [](auto &b) { patch(b, "GS_COUNT", int32_t{24}); }},
      {"GS_COUNT negative", [](auto &b) { patch(b, "GS_COUNT", int32_t{-25}); }},
      {"S_LAT above N_LAT", [](auto &b) { patch(b, "S_LAT", 48 * 3600.0); }},
      {"LAT_INC zero", [](auto &b) { patch(b, "LAT_INC", 0.0); }},
      {"LAT_INC NaN", [](auto &b) { patch(b, "LAT_INC", std::nan("")); }},
      {"LONG_INC not dividing", [](auto &b) { patch(b, "LONG_INC", 1700.0); }},
      {"N_LAT beyond the pole", [](auto &b) { patch(b, "N_LAT", 400 * 3600.0); }},
      {"sub-grid too large for the file",
       [](auto &b) {
         patch(b, "LAT_INC", 1.0);
         patch(b, "GS_COUNT", int32_t{7201 * 5});
       }},
      {"child's parent unknown",
       [](auto &b) {
         const std::size_t child = 11 + 11 + 25 * 1;  // overview, parent header, parent nodes
         std::memcpy(&b[16 * (child + 1) + 8], "NOBODY  ", 8);
       }},
      {"parents in a loop",
       [](auto &b) {
         std::memcpy(&b[16 * (11 + 1) + 8], "CHILD   ", 8);  // the parent's PARENT
       }},
      {"NaN shift",
       [](auto &b) {
         const float nan = std::nanf("");
         std::memcpy(&b[16 * (11 + 11)], &nan, 4);
       }},
      {"not an NTv2 file", [](auto &b) { std::memcpy(&b[0], "NUM_XREC", 8); }},
  };
  for (const Lie &lie : lies) {
    auto bytes = good;
    lie.apply(bytes);
    EXPECT_EQ(read(dir.write("lie.gsb", bytes)), nullptr) << lie.what;
  }
}

TEST(Ntv2Damaged, MissingFileAndDirectoryAreRefused) {
  ko::test::TempDir dir;
  EXPECT_EQ(read(dir.dir() + "/absent.gsb"), nullptr);
  EXPECT_EQ(read(dir.dir()), nullptr);
  EXPECT_EQ(read(""), nullptr);
  EXPECT_EQ(ko::ntv2_read(nullptr, nullptr), nullptr);
}

}  // namespace
