// Test helpers for the transformation kernels: spheroids, PROJ as an oracle
// (RAII wrappers, degree-order conversions), and point sets over an area.
#pragma once

#include "transformations/methods.h"

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#ifdef KO_HAVE_PROJ
#include <proj.h>
#endif

namespace ko::test {

inline constexpr double kDeg = 0.017453292519943295;
inline constexpr double kArcsecRad = kDeg / 3600.0;

// Spheroid pair from a and 1/f.
struct Sph {
  double v[2];
  Sph(double a, double inv_f) {
    const double f = inv_f == 0.0 ? 0.0 : 1.0 / inv_f;
    v[0] = a;
    v[1] = f * (2.0 - f);
  }
};

inline const Sph kWgs84{6378137.0, 298.257223563};
inline const Sph kGrs80{6378137.0, 298.257222101};
inline const Sph kAiry{6377563.396, 299.3249646};
inline const Sph kBessel{6377397.155, 299.1528128};
inline const Sph kIntl{6378388.0, 297.0};
inline const Sph kClarke1866{6378206.4, 294.978698213898};

// Evenly spread (lon, lat) points in degrees over a box, corners included.
inline std::vector<double> box_points(double west, double south, double east, double north,
                                      int per_side) {
  std::vector<double> pts;
  for (int i = 0; i < per_side; ++i)
    for (int j = 0; j < per_side; ++j) {
      pts.push_back(west + (east - west) * i / (per_side - 1));
      pts.push_back(south + (north - south) * j / (per_side - 1));
    }
  return pts;
}

inline std::vector<double> to_radians(const std::vector<double> &deg) {
  std::vector<double> r(deg);
  for (double &v : r) v *= kDeg;
  return r;
}

// Horizontal distance in metres between two (lon, lat) radian positions,
// close enough for millimetre comparisons.
inline double horizontal_m(double lon1, double lat1, double lon2, double lat2) {
  const double r = 6378137.0;
  const double dx = std::remainder(lon1 - lon2, 2 * M_PI) * std::cos(lat1) * r;
  const double dy = (lat1 - lat2) * r;
  return std::hypot(dx, dy);
}

#ifdef KO_HAVE_PROJ
struct ContextDel {
  void operator()(PJ_CONTEXT *c) const { proj_context_destroy(c); }
};
struct PjDel {
  void operator()(PJ *p) const { proj_destroy(p); }
};

// A PROJ operation with its own context; ok() is false when PROJ could not
// build it.
class ProjOp {
 public:
  explicit ProjOp(const char *definition) : ctx_(proj_context_create()) {
    proj_log_level(ctx_.get(), PJ_LOG_NONE);
    const char *paths[] = {"/usr/share/proj"};
    proj_context_set_search_paths(ctx_.get(), 1, paths);
    op_.reset(proj_create(ctx_.get(), definition));
  }
  ProjOp(const char *auth, const char *code) : ctx_(proj_context_create()) {
    proj_log_level(ctx_.get(), PJ_LOG_NONE);
    op_.reset(proj_create_from_database(ctx_.get(), auth, code,
                                        PJ_CATEGORY_COORDINATE_OPERATION, 0, nullptr));
  }
  bool ok() const { return op_ != nullptr; }
  std::string proj_string() const {
    const char *s = op_ ? proj_as_proj_string(ctx_.get(), op_.get(), PJ_PROJ_5, nullptr) : nullptr;
    return s != nullptr ? s : "";
  }
  PJ_COORD trans(PJ_DIRECTION dir, double a, double b, double c = 0.0, double t = 0.0) const {
    return proj_trans(op_.get(), dir, proj_coord(a, b, c, t));
  }

 private:
  std::unique_ptr<PJ_CONTEXT, ContextDel> ctx_;
  std::unique_ptr<PJ, PjDel> op_;
};
#endif

}  // namespace ko::test
