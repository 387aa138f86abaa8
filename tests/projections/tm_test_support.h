// Shared set-up for the Transverse Mercator family tests: a spheroid, a
// parameter array and constants cached the way the point loop caches them.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "ko.h"
#include "projections/simd.h"

namespace ko::tmtest {

inline constexpr double kDeg = 0.017453292519943295;  // radians per degree

struct Spheroid {
  double a;
  double f;
  double e2() const { return f * (2.0 - f); }
};

inline constexpr Spheroid kWgs84{6378137.0, 1.0 / 298.257223563};
inline constexpr Spheroid kClarke1866{6378206.4, 1.0 / 294.978698213898};
inline constexpr Spheroid kBessel1841{6377397.155, 1.0 / 299.1528128};
inline constexpr Spheroid kGrs80{6378137.0, 1.0 / 298.257222101};

// One projection with its spheroid pair, parameter array and constants.
class TmSetup {
 public:
  TmSetup(const ko_projlist_entry &vec, const Spheroid &s, double lon0_deg, double lat0_deg,
          double k0)
      : vec_(vec) {
    sph_[0] = s.a;
    sph_[1] = s.e2();
    parms_[2] = lon0_deg * 0.017453292519943295;
    parms_[5] = k0;
    parms_[6] = lat0_deg * 0.017453292519943295;
    constants_ = ko_constants_new();
    count_ = vec_.constfunc(constants_, sph_, parms_);
  }
  ~TmSetup() { ko_constants_del(constants_); }
  TmSetup(const TmSetup &) = delete;
  TmSetup &operator=(const TmSetup &) = delete;

  int count() const { return count_; }
  const int32_t *ivals() const { return ko_constants_ivals(constants_); }
  const double *dvals() const { return ko_constants_dvals(constants_); }
  const double *sph() const { return sph_; }
  const double *parms() const { return parms_; }
  // Sets a parameter slot that the constants do not depend on (the plane
  // orientation, slots 12 to 14).
  void set_parm(int slot, double value) { parms_[slot] = value; }

  int forward(std::vector<double> &xy) const {
    return vec_.forward(sph_, parms_, static_cast<int>(xy.size() / 2), xy.data(), ivals(), dvals());
  }
  int inverse(std::vector<double> &xy) const {
    return vec_.inverse(sph_, parms_, static_cast<int>(xy.size() / 2), xy.data(), ivals(), dvals());
  }
  // The same without cached constants (the function builds temporary ones).
  int forward_uncached(std::vector<double> &xy) const {
    return vec_.forward(sph_, parms_, static_cast<int>(xy.size() / 2), xy.data(), nullptr, nullptr);
  }
  int inverse_uncached(std::vector<double> &xy) const {
    return vec_.inverse(sph_, parms_, static_cast<int>(xy.size() / 2), xy.data(), nullptr, nullptr);
  }

 private:
  const ko_projlist_entry &vec_;
  double sph_[2] = {};
  double parms_[KO_PARM_COUNT] = {};
  ko_constants *constants_ = nullptr;
  int count_ = -1;
};

// Chooses the four-wide kernels (when the machine and SLEEF offer them) or
// the scalar ones for the life of the object.
struct KernelChoice {
  explicit KernelChoice(bool vector) { ko::simd::set_vector_kernels(vector); }
  ~KernelChoice() { ko::simd::set_vector_kernels(true); }
  KernelChoice(const KernelChoice &) = delete;
  KernelChoice &operator=(const KernelChoice &) = delete;
};

// One row of tests/data/tm_exact_reference.csv: the exact transverse
// Mercator at 30 digits (scripts/tm_reference.py), central meridian 0,
// origin on the equator.
struct ReferencePoint {
  Spheroid spheroid;
  double k0;
  double lat, lon;  // degrees
  double x, y;      // metres
};

// The rows of one set ("strip": within 3900 km of the central meridian;
// "wide": up to 80 degrees from it).
inline std::vector<ReferencePoint> reference_points(const std::string &set) {
  std::vector<ReferencePoint> out;
  std::ifstream in(std::string(KO_TEST_DATA_DIR) + "/tm_exact_reference.csv");
  std::string line;
  std::getline(in, line);  // header
  while (std::getline(in, line)) {
    std::stringstream fields(line);
    std::string name, cell;
    std::getline(fields, name, ',');
    if (name != set) continue;
    double v[7];
    for (double &d : v) {
      std::getline(fields, cell, ',');
      d = std::stod(cell);
    }
    out.push_back({{v[0], 1.0 / v[1]}, v[2], v[3], v[4], v[5], v[6]});
  }
  return out;
}

// Ground distance in metres between two geographic points in radians, close
// together (local flat approximation with radius a, enough for nanometres).
inline double ground_error(double a, double lon1, double lat1, double lon2, double lat2) {
  return a * std::hypot(lat1 - lat2, std::remainder(lon1 - lon2, 2.0 * M_PI) * std::cos(lat2));
}

// Checks a projection against every reference point of a set: forward within
// `tol` metres in x and y, inverse within `tol` metres on the ground.  Each
// point is converted five times in one array, so that a four-wide kernel and
// its padded tail both see it.
inline void expect_reference_accuracy(const ko_projlist_entry &vec, const std::string &set, double tol) {
  const auto points = reference_points(set);
  ASSERT_GE(points.size(), 400u) << set;
  for (const auto &r : points) {
    TmSetup tm(vec, r.spheroid, 0.0, 0.0, r.k0);
    std::vector<double> fwd, inv;
    for (int k = 0; k < 5; ++k) {
      fwd.insert(fwd.end(), {r.lon * kDeg, r.lat * kDeg});
      inv.insert(inv.end(), {r.x, r.y});
    }
    ASSERT_EQ(tm.forward(fwd), 5);
    ASSERT_EQ(tm.inverse(inv), 5);
    for (int k = 0; k < 5; ++k) {
      EXPECT_NEAR(fwd[2 * k], r.x, tol) << set << " " << r.lat << " " << r.lon;
      EXPECT_NEAR(fwd[2 * k + 1], r.y, tol) << set << " " << r.lat << " " << r.lon;
      EXPECT_LE(ground_error(r.spheroid.a, inv[2 * k], inv[2 * k + 1], r.lon * kDeg, r.lat * kDeg), tol)
          << set << " " << r.lat << " " << r.lon;
    }
  }
}

}  // namespace ko::tmtest
