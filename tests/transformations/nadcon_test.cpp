// NADCON (and HARN, which uses the same files) and the NOAA .b grids of
// NADCON5 and GEOCON: files written here in each documented format, the
// shifts checked against bilinear interpolation by hand on the written
// nodes; damaged files refused.
#include "tests/transformations/grid_writer.h"
#include "tests/transformations/oracle.h"
#include "transformations/grid_set.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using ko::test::kArcsecRad;
using ko::test::kDeg;

int apply(const ko::GridSet *set, bool inverse, std::vector<double> &pts, double *z = nullptr) {
  ko::MethodArgs a;
  a.data = set;
  const int n = static_cast<int>(pts.size() / 2);
  return inverse ? ko::grid_shift_inverse(a, n, pts.data(), z)
                 : ko::grid_shift_forward(a, n, pts.data(), z);
}

// A NADCON pair over 100°W..96.25°W (24 columns, the fewest whose record
// holds the header), 35°N..36.5°N at 0.25°: 16 columns by 7 rows would not
// do, the header needs 96 bytes of a 4 (NC + 1)-byte record.
ko::test::NadconGrid las_grid() {
  return {24, 7, -100.0f, 0.25f, 35.0f, 0.25f,
          [](int r, int c) { return 0.3f + 0.01f * r * r - 0.02f * c + 0.001f * r * c; }};
}
ko::test::NadconGrid los_grid() {
  auto g = las_grid();
  g.value = [](int r, int c) { return -1.1f + 0.03f * c - 0.005f * r * c; };
  return g;
}

double node(const ko::test::NadconGrid &g, int r, int c) { return g.value(r, c); }

TEST(Nadcon, ShiftsAreBilinearInTheWrittenNodes) {
  ko::test::TempDir dir;
  for (bool big : {false, true}) {
    const auto las = las_grid(), los = los_grid();
    ko::OwnedGridSet set(ko::nadcon_read(dir.write("g.las", ko::test::nadcon_bytes(las, big)).c_str(),
                                         dir.write("g.los", ko::test::nadcon_bytes(los, big)).c_str()));
    ASSERT_NE(set, nullptr) << big;
    const ko_gcs_extent want{-100.0, 35.0, -94.25, 36.5, 0.25, 0.25};
    EXPECT_TRUE(ko_gcs_extent_eq(&set->extent, &want));
    const double pts_deg[][2] = {{-99.9, 35.1}, {-97.13, 36.02}, {-100.0, 35.0}, {-94.25, 36.5},
                                 {-95.0, 35.75}, {-94.3, 36.49}};
    for (const auto &p : pts_deg) {
      std::vector<double> pt{p[0] * kDeg, p[1] * kDeg};
      ASSERT_EQ(apply(set.get(), false, pt), 1) << p[0] << " " << p[1];
      double dlat = 0, dlon = 0;
      auto f_las = [&](int r, int c) { return node(las, r, c); };
      auto f_los = [&](int r, int c) { return node(los, r, c); };
      ASSERT_TRUE(ko::test::bilinear_expected(-100, 35, 0.25, 0.25, 24, 7, f_las, p[0], p[1], dlat));
      ASSERT_TRUE(ko::test::bilinear_expected(-100, 35, 0.25, 0.25, 24, 7, f_los, p[0], p[1], dlon));
      // Longitude shifts are positive west in NADCON.
      EXPECT_NEAR(pt[0], (p[0] - dlon / 3600.0) * kDeg, 1e-9 * kArcsecRad) << p[0] << " " << p[1];
      EXPECT_NEAR(pt[1], (p[1] + dlat / 3600.0) * kDeg, 1e-9 * kArcsecRad) << p[0] << " " << p[1];
    }
  }
}

TEST(Nadcon, InverseAndOutsidePoints) {
  ko::test::TempDir dir;
  ko::OwnedGridSet set(ko::nadcon_read(dir.write("g.las", ko::test::nadcon_bytes(las_grid())).c_str(),
                                       dir.write("g.los", ko::test::nadcon_bytes(los_grid())).c_str()));
  ASSERT_NE(set, nullptr);
  auto pts = ko::test::to_radians(ko::test::box_points(-99.99, 35.01, -94.26, 36.49, 11));
  const auto start = pts;
  const int n = static_cast<int>(pts.size() / 2);
  ASSERT_EQ(apply(set.get(), false, pts), n);
  ASSERT_EQ(apply(set.get(), true, pts), n);
  for (std::size_t i = 0; i < pts.size(); ++i) EXPECT_NEAR(pts[i], start[i], 1e-12);
  std::vector<double> out{-101 * kDeg, 35.5 * kDeg, -97 * kDeg, 37 * kDeg, NAN, 36 * kDeg};
  const auto before = out;
  EXPECT_EQ(apply(set.get(), false, out), 0);
  EXPECT_EQ(apply(set.get(), true, out), 0);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(out[i], before[i]);
}

TEST(Nadcon, DamagedFilesAreRefused) {
  ko::test::TempDir dir;
  const auto las = ko::test::nadcon_bytes(las_grid()), los = ko::test::nadcon_bytes(los_grid());
  const std::string los_path = dir.write("g.los", los);
  for (std::size_t len = 0; len < las.size(); len += 7) {
    const ko::test::Bytes cut(las.begin(), las.begin() + static_cast<long>(len));
    EXPECT_EQ(ko::nadcon_read(dir.write("cut.las", cut).c_str(), los_path.c_str()), nullptr) << len;
  }
  auto lie = [&](std::size_t offset, auto value) {
    auto b = las;
    std::memcpy(&b[offset], &value, sizeof value);
    return ko::OwnedGridSet(ko::nadcon_read(dir.write("lie.las", b).c_str(), los_path.c_str()));
  };
  EXPECT_EQ(lie(64, int32_t{25}), nullptr);         // NC larger than the file holds
  EXPECT_EQ(lie(68, int32_t{8}), nullptr);          // NR larger than the file holds
  EXPECT_EQ(lie(64, int32_t{-24}), nullptr);        // negative NC
  EXPECT_EQ(lie(64, int32_t{10}), nullptr);         // header longer than its record
  EXPECT_EQ(lie(80, 0.0f), nullptr);                // DX zero
  EXPECT_EQ(lie(88, std::nanf("")), nullptr);       // DY NaN
  EXPECT_EQ(lie(76, -99.0f), nullptr);              // XMIN differs from the .los
  EXPECT_EQ(lie(104, std::nanf("")), nullptr);      // a NaN node
  EXPECT_NE(lie(100, std::nanf("")), nullptr);      // the unused word of a row
  EXPECT_EQ(ko::nadcon_read(dir.write("ok.las", las).c_str(), (dir.dir() + "/none.los").c_str()),
            nullptr);
  EXPECT_EQ(ko::nadcon_read(nullptr, los_path.c_str()), nullptr);
}

// ---------------------------------------------------------------------------
// NOAA .b: a grid across the antimeridian, 170°E..190°E (given as 0..360
// longitudes), 50°N..52°N at 1°, with latitude, longitude and height shifts.
ko::test::BGrid b_grid(int k) {
  ko::test::BGrid g{50.0, 170.0, 1.0, 2.0, 3, 11, 1, nullptr};
  g.value = [k](int r, int c) {
    switch (k) {
      case 0: return 0.2f + 0.05f * r - 0.01f * c * c;
      case 1: return -0.7f + 0.02f * c + 0.03f * r * r;
      default: return 1.25f - 0.1f * r + 0.075f * c;
    }
  };
  return g;
}

struct BFiles {
  std::string lat, lon, eht;
};
BFiles write_b(const ko::test::TempDir &dir, bool big = true) {
  return {dir.write("x.lat.b", ko::test::noaa_b_bytes(b_grid(0), big)),
          dir.write("x.lon.b", ko::test::noaa_b_bytes(b_grid(1), big)),
          dir.write("x.eht.b", ko::test::noaa_b_bytes(b_grid(2), big))};
}

TEST(NoaaB, ShiftsAndHeightsAreBilinearInTheWrittenNodes) {
  ko::test::TempDir dir;
  for (bool big : {true, false}) {
    const BFiles f = write_b(dir, big);
    ko::OwnedGridSet set(ko::noaa_b_read(f.lat.c_str(), f.lon.c_str(), f.eht.c_str()));
    ASSERT_NE(set, nullptr);
    const ko_gcs_extent want{170.0, 50.0, -170.0, 52.0, 2.0, 1.0};
    EXPECT_TRUE(ko_gcs_extent_eq(&set->extent, &want));
    // Longitudes east of 180° come in as negative ones.
    const double pts_deg[][2] = {{170.0, 50.0}, {175.3, 51.2}, {179.99, 50.5}, {-179.5, 51.9},
                                 {-170.0, 52.0}, {-175.25, 50.75}};
    for (const auto &p : pts_deg) {
      std::vector<double> pt{p[0] * kDeg, p[1] * kDeg};
      double z = 100.0;
      ASSERT_EQ(apply(set.get(), false, pt, &z), 1) << p[0];
      const double lon360 = p[0] < 0 ? p[0] + 360.0 : p[0];
      double want_s[3] = {};
      for (int k = 0; k < 3; ++k) {
        auto f_k = [&](int r, int c) { return static_cast<double>(b_grid(k).value(r, c)); };
        ASSERT_TRUE(ko::test::bilinear_expected(170, 50, 2, 1, 11, 3, f_k, lon360, p[1], want_s[k]));
      }
      const double want_lon = std::remainder(lon360 + want_s[1] / 3600.0, 360.0);
      EXPECT_NEAR(std::remainder(pt[0] / kDeg - want_lon, 360.0) * kDeg, 0.0, 1e-9 * kArcsecRad)
          << p[0];
      EXPECT_NEAR(pt[1], (p[1] + want_s[0] / 3600.0) * kDeg, 1e-9 * kArcsecRad) << p[0];
      EXPECT_NEAR(z, 100.0 + want_s[2], 1e-12) << p[0];
    }
  }
}

TEST(NoaaB, WithoutHeightFileHeightsStay) {
  ko::test::TempDir dir;
  const BFiles f = write_b(dir);
  ko::OwnedGridSet set(ko::noaa_b_read(f.lat.c_str(), f.lon.c_str(), nullptr));
  ASSERT_NE(set, nullptr);
  EXPECT_EQ(set->components, 2);
  std::vector<double> pt{175 * kDeg, 51 * kDeg};
  double z = 12.5;
  ASSERT_EQ(apply(set.get(), false, pt, &z), 1);
  EXPECT_EQ(z, 12.5);
}

TEST(NoaaB, InverseUndoesShiftAndHeight) {
  ko::test::TempDir dir;
  const BFiles f = write_b(dir);
  ko::OwnedGridSet set(ko::noaa_b_read(f.lat.c_str(), f.lon.c_str(), f.eht.c_str()));
  ASSERT_NE(set, nullptr);
  auto pts = ko::test::to_radians(ko::test::box_points(170.01, 50.01, 189.99, 51.99, 9));
  for (std::size_t i = 0; i < pts.size(); i += 2) pts[i] = std::remainder(pts[i], 2 * M_PI);
  const auto start = pts;
  const int n = static_cast<int>(pts.size() / 2);
  std::vector<double> z(n, -30.0);
  ASSERT_EQ(apply(set.get(), false, pts, z.data()), n);
  ASSERT_EQ(apply(set.get(), true, pts, z.data()), n);
  for (std::size_t i = 0; i < pts.size(); ++i) EXPECT_NEAR(pts[i], start[i], 1e-12);
  for (double h : z) EXPECT_NEAR(h, -30.0, 1e-9);
}

TEST(NoaaB, DamagedFilesAreRefused) {
  ko::test::TempDir dir;
  const BFiles f = write_b(dir);
  const auto lat = ko::test::noaa_b_bytes(b_grid(0));
  for (std::size_t len = 0; len < lat.size(); len += 5) {
    const ko::test::Bytes cut(lat.begin(), lat.begin() + static_cast<long>(len));
    EXPECT_EQ(ko::noaa_b_read(dir.write("cut.b", cut).c_str(), f.lon.c_str(), nullptr), nullptr) << len;
  }
  auto be32 = [](int32_t v) { return static_cast<int32_t>(__builtin_bswap32(static_cast<uint32_t>(v))); };
  auto be64 = [](double v) {
    uint64_t u;
    std::memcpy(&u, &v, 8);
    u = __builtin_bswap64(u);
    double d;
    std::memcpy(&d, &u, 8);
    return d;
  };
  auto lie = [&](std::size_t offset, auto value) {
    auto b = lat;
    std::memcpy(&b[offset], &value, sizeof value);
    return ko::OwnedGridSet(ko::noaa_b_read(dir.write("lie.b", b).c_str(), f.lon.c_str(), nullptr));
  };
  EXPECT_EQ(lie(0, be32(45)), nullptr);             // header record length
  EXPECT_EQ(lie(48, be32(43)), nullptr);            // trailing header length
  EXPECT_EQ(lie(36, be32(4)), nullptr);             // NLA beyond the file
  EXPECT_EQ(lie(40, be32(12)), nullptr);            // NLO beyond the file
  EXPECT_EQ(lie(40, be32(-11)), nullptr);           // negative NLO
  EXPECT_EQ(lie(44, be32(0)), nullptr);             // IKIND other than 4-byte reals
  EXPECT_EQ(lie(20, be64(0.0)), nullptr);           // DLA zero
  EXPECT_EQ(lie(12, be64(std::nan(""))), nullptr);  // GLOMN NaN
  EXPECT_EQ(lie(4, be64(89.5)), nullptr);           // rows past the pole
  EXPECT_EQ(lie(52, be32(40)), nullptr);            // a row's record length
  EXPECT_EQ(lie(56, be32(0x7fc00000)), nullptr);    // a NaN node
  EXPECT_EQ(ko::noaa_b_read(f.lat.c_str(), f.lon.c_str(), (dir.dir() + "/none.b").c_str()), nullptr);
  // Grids of different layouts do not make one transformation.
  auto other = b_grid(1);
  other.dlon = 1.0;
  other.cols = 21;
  const std::string other_path = dir.write("other.b", ko::test::noaa_b_bytes(other));
  EXPECT_EQ(ko::noaa_b_read(f.lat.c_str(), other_path.c_str(), nullptr), nullptr);
}

}  // namespace
