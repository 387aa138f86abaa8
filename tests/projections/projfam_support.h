// Helpers of the projection-family tests: parameter arrays, calls through a
// family's function slots, sexagesimal angles, spheroids from a and 1/f, and
// PROJ as an independent oracle.
#pragma once

#include "ko.h"
#include "projections/family.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <initializer_list>
#include <span>
#include <string>
#include <utility>
#include <vector>

#ifdef KO_HAVE_PROJ
#include <proj.h>
#endif

namespace ko::test {

inline constexpr double kDeg = 0.017453292519943295;

// Degrees, minutes, seconds to radians; the sign of deg applies to all.
inline double dms(double deg, double min = 0.0, double sec = 0.0) {
  const double s = deg < 0.0 || std::signbit(deg) ? -1.0 : 1.0;
  return s * (std::fabs(deg) + min / 60.0 + sec / 3600.0) * kDeg;
}

// Spheroid pair from the semi-major axis and the inverse flattening
// (0 for a sphere).
struct Spheroid {
  double pair[2];
  const double *sph() const { return pair; }
};
inline Spheroid spheroid_rf(double a, double rf) {
  const double f = rf == 0.0 ? 0.0 : 1.0 / rf;
  return {{a, f * (2.0 - f)}};
}
inline Spheroid spheroid_ab(double a, double b) { return {{a, 1.0 - (b / a) * (b / a)}}; }

inline const Spheroid kWgs84 = spheroid_rf(6378137.0, 298.257223563);
inline const Spheroid kGrs80 = spheroid_rf(6378137.0, 298.257222101);
inline const Spheroid kClarke1866 = spheroid_ab(6378206.4, 6356583.8);
inline const Spheroid kIntl1924 = spheroid_rf(6378388.0, 297.0);
inline const Spheroid kBessel = spheroid_rf(6377397.155, 299.1528128);

// A 24-slot parameter array with the given (slot, value) pairs; the scale
// factor defaults to 1 as the parameter array filling does.
struct Parms {
  double v[KO_PARM_COUNT] = {};
  Parms(std::initializer_list<std::pair<int, double>> slots) {
    v[ko::proj::slot::kScaleFactor] = 1.0;
    for (auto [s, x] : slots) v[s] = x;
  }
  const double *data() const { return v; }
  double &operator[](int i) { return v[i]; }
};

// One projection's function slots.
struct Family {
  ko_proj_fn forward;
  ko_proj_fn inverse;
  ko_proj_constfunc constfunc;
};

// The function slots of a projection vector.
inline Family family_of(const ko_projlist_entry &v) { return {v.forward, v.inverse, v.constfunc}; }

// Cached constants for a parameter set, deleted at the end of scope.  A
// projection without a constants function has status 0 and null arrays.
struct Cached {
  ko_constants *c = nullptr;
  int status = -1;
  Cached(const Family &f, const Spheroid &s, const Parms &p) : c(ko_constants_new()) {
    status = f.constfunc != nullptr ? f.constfunc(c, s.sph(), p.data()) : 0;
  }
  ~Cached() { ko_constants_del(c); }
  Cached(const Cached &) = delete;
  Cached &operator=(const Cached &) = delete;
  const int32_t *ivals() const { return ko_constants_ivals(c); }
  const double *dvals() const { return ko_constants_dvals(c); }
};

struct XY {
  double x, y;
};

// Forward of one point (radians in, metres out) with temporary constants.
inline XY forward1(const Family &f, const Spheroid &s, const Parms &p, double lon, double lat,
                   int *count = nullptr) {
  double xy[2] = {lon, lat};
  const int n = f.forward(s.sph(), p.data(), 1, xy, nullptr, nullptr);
  if (count != nullptr) *count = n;
  return {xy[0], xy[1]};
}
inline XY inverse1(const Family &f, const Spheroid &s, const Parms &p, double x, double y,
                   int *count = nullptr) {
  double xy[2] = {x, y};
  const int n = f.inverse(s.sph(), p.data(), 1, xy, nullptr, nullptr);
  if (count != nullptr) *count = n;
  return {xy[0], xy[1]};
}

// A lon/lat grid (radians) over a box given in degrees, nx by ny points.
inline std::vector<double> grid(double west, double south, double east, double north, int nx,
                                int ny) {
  std::vector<double> pts;
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) {
      pts.push_back((west + (east - west) * i / (nx - 1)) * kDeg);
      pts.push_back((south + (north - south) * j / (ny - 1)) * kDeg);
    }
  return pts;
}

// A number written with all its digits, for PROJ strings.
inline std::string num(double v) {
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.17g", v);
  return buf;
}

// Difference of two longitudes in degrees, modulo 360.
inline double lon_diff_deg(double a, double b) {
  return std::remainder(a - b, ko::kTwoPi) / kDeg;
}

#ifdef KO_HAVE_PROJ
// A PROJ operation from a "+proj=..." string: radians in, metres out.
class ProjOracle {
 public:
  explicit ProjOracle(const std::string &definition)
      : ctx_(proj_context_create()), pj_(proj_create(ctx_, definition.c_str())) {}
  ~ProjOracle() {
    if (pj_ != nullptr) proj_destroy(pj_);
    proj_context_destroy(ctx_);
  }
  ProjOracle(const ProjOracle &) = delete;
  ProjOracle &operator=(const ProjOracle &) = delete;
  bool ok() const { return pj_ != nullptr; }

  XY forward(double lon, double lat) const {
    PJ_COORD c = proj_coord(lon, lat, 0, 0);
    c = proj_trans(pj_, PJ_FWD, c);
    return {c.xy.x, c.xy.y};
  }
  XY inverse(double x, double y) const {
    PJ_COORD c = proj_coord(x, y, 0, 0);
    c = proj_trans(pj_, PJ_INV, c);
    return {c.lp.lam, c.lp.phi};
  }

 private:
  PJ_CONTEXT *ctx_;
  PJ *pj_;
};

// An oracle whose forward results are shifted by a constant (dx, dy): a
// false origin that PROJ places elsewhere.
struct ShiftedOracle {
  const ProjOracle &oracle;
  double dx, dy;
  XY forward(double lon, double lat) const {
    XY r = oracle.forward(lon, lat);
    return {r.x - dx, r.y - dy};
  }
};
#endif

// Forward through the family against the oracle on every point of pts
// (radians), then inverse of the family's own output back to the start.
// Tolerances: forward tol_m metres from the oracle, inverse tol_deg degrees.
template <class Oracle>
void check_against(const Family &f, const Spheroid &s, const Parms &p, const Oracle &oracle,
                   const std::vector<double> &pts, double tol_m, double tol_deg) {
  Cached cached(f, s, p);
  ASSERT_GE(cached.status, 0);
  std::vector<double> xy = pts;
  const int npts = static_cast<int>(pts.size() / 2);
  EXPECT_EQ(f.forward(s.sph(), p.data(), npts, xy.data(), cached.ivals(), cached.dvals()), npts);
  double worst_m = 0.0, worst_deg = 0.0;
  for (int i = 0; i < npts; ++i) {
    const XY want = oracle.forward(pts[2 * i], pts[2 * i + 1]);
    const double d = std::hypot(xy[2 * i] - want.x, xy[2 * i + 1] - want.y);
    worst_m = std::fmax(worst_m, d);
    EXPECT_LE(d, tol_m) << "point " << pts[2 * i] / kDeg << ", " << pts[2 * i + 1] / kDeg
                        << " got " << xy[2 * i] << ", " << xy[2 * i + 1] << " want " << want.x
                        << ", " << want.y;
  }
  EXPECT_EQ(f.inverse(s.sph(), p.data(), npts, xy.data(), cached.ivals(), cached.dvals()), npts);
  for (int i = 0; i < npts; ++i) {
    // At a pole every longitude is the same point.
    const bool pole = std::fabs(pts[2 * i + 1]) == ko::kHalfPi;
    const double dlon = pole ? 0.0 : std::fabs(lon_diff_deg(xy[2 * i], pts[2 * i]));
    const double dlat = std::fabs(xy[2 * i + 1] - pts[2 * i + 1]) / kDeg;
    worst_deg = std::fmax(worst_deg, std::fmax(dlon, dlat));
    EXPECT_LE(dlon, tol_deg) << "point " << i;
    EXPECT_LE(dlat, tol_deg) << "point " << i;
  }
  // The measured accuracy, for the record in docs/projections.md.
  std::printf("[ measured ] forward %.3g m, inverse %.3g deg over %d points\n", worst_m,
              worst_deg, npts);
}

// A worked example of IOGP guidance note 7-2: the point and its printed
// grid coordinates, in the example's unit (metres per unit `unit`) with its
// false origin.  Checked both ways to half the printed last digit: `tol`
// in the example's unit, `tol_sec` in arc-seconds.
struct GuidanceExample {
  const char *name;
  const Family *family;
  Spheroid spheroid;
  Parms parms;
  double unit, fe, fn;
  double lon, lat;  // radians
  double e, n;
  double tol = 0.005, tol_sec = 0.0005;
};

inline void check_guidance_example(const GuidanceExample &ex) {
  SCOPED_TRACE(ex.name);
  int count = 0;
  const XY f = forward1(*ex.family, ex.spheroid, ex.parms, ex.lon, ex.lat, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(f.x / ex.unit + ex.fe, ex.e, ex.tol + 1e-9);
  EXPECT_NEAR(f.y / ex.unit + ex.fn, ex.n, ex.tol + 1e-9);
  const XY b = inverse1(*ex.family, ex.spheroid, ex.parms, (ex.e - ex.fe) * ex.unit,
                        (ex.n - ex.fn) * ex.unit, &count);
  EXPECT_EQ(count, 1);
  EXPECT_NEAR(b.x / kDeg * 3600.0, ex.lon / kDeg * 3600.0, ex.tol_sec);
  EXPECT_NEAR(b.y / kDeg * 3600.0, ex.lat / kDeg * 3600.0, ex.tol_sec);
}

// A definition the family must refuse: its constants function fails, and
// forward and inverse with temporary constants convert nothing and leave
// the point as it was.
inline void expect_refused(const Family &f, const Spheroid &s, const Parms &p, const char *why) {
  SCOPED_TRACE(why);
  if (f.constfunc != nullptr) {
    Cached cached(f, s, p);
    EXPECT_LT(cached.status, 0);
  }
  double xy[2] = {0.1, 0.2};
  EXPECT_EQ(f.forward(s.sph(), p.data(), 1, xy, nullptr, nullptr), 0);
  EXPECT_EQ(f.inverse(s.sph(), p.data(), 1, xy, nullptr, nullptr), 0);
  EXPECT_EQ(xy[0], 0.1);
  EXPECT_EQ(xy[1], 0.2);
}

#ifdef KO_HAVE_PROJ
// A definition against the same one written for PROJ, checked over a box
// (degrees) by check_against with the given grid and tolerances.
struct ProjCase {
  const char *name;
  const Family *family;
  Spheroid spheroid;
  Parms parms;
  std::string proj;
  double west, south, east, north;
};

inline void check_proj_cases(std::span<const ProjCase> cases, int nx = 9, int ny = 9,
                             double tol_m = 1e-3, double tol_deg = 1e-9) {
  for (const ProjCase &c : cases) {
    SCOPED_TRACE(c.name);
    ProjOracle oracle(c.proj);
    ASSERT_TRUE(oracle.ok()) << c.proj;
    check_against(*c.family, c.spheroid, c.parms, oracle,
                  grid(c.west, c.south, c.east, c.north, nx, ny), tol_m, tol_deg);
  }
}
inline void check_proj_cases(std::initializer_list<ProjCase> cases, int nx = 9, int ny = 9,
                             double tol_m = 1e-3, double tol_deg = 1e-9) {
  check_proj_cases(std::span<const ProjCase>(cases.begin(), cases.size()), nx, ny, tol_m, tol_deg);
}
#endif

}  // namespace ko::test
