// The auxiliary-sphere forms (Equidistant_Cylindrical, Miller, Mollweide,
// Eckert VI and IV, Van der Grinten I, Stereographic, Azimuthal Equidistant,
// Lambert Azimuthal Equal Area, Orthographic, Gnomonic): each sphere type
// against PROJ's spherical projection on the matching sphere, the radius
// and, for type 3, the authalic latitudes of the points and of the centre
// computed independently with GeographicLib (Geodesic::EllipsoidArea,
// Ellipsoid::AuthalicLatitude); the edges of each map; refused types.
#include "tests/projections/projfam_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#ifdef KO_HAVE_GEOGRAPHICLIB
#include <GeographicLib/Ellipsoid.hpp>
#include <GeographicLib/Geodesic.hpp>
#endif

namespace {

using namespace ko::test;
namespace slot = ko::proj::slot;

// One auxiliary-sphere form: its vector, the PROJ projection it is, where
// its centre and its latitude parameter go, and the box of the world it
// maps (degrees, relative to the centre's longitude).
struct AuxsCase {
  const char *name;
  const ko_projlist_entry *vector;
  const char *proj;      // "+proj=..." without centre and figure
  int lon_slot;          // Central_Meridian or Longitude_Of_Center
  int lat_slot;          // the latitude parameter, or -1
  const char *proj_lat;  // its PROJ name ("+lat_ts=", "+lat_0=")
  double lat_deg;        // its value in the tests
  double scale;          // slot 5, written as +k_0 when not 1
  double dlon, south, north;
  // A point (in units of the sphere's radius) beyond the outline whose
  // inverse must be refused; 0, 0 when every plane point is on the map.
  double off_x, off_y;
  // A point (degrees: longitude from the centre, latitude) the forward must
  // refuse; lat > 90 when every point of the earth is on the map.
  double bad_dlon, bad_lat;
  // The grid's extreme latitude against PROJ, below 90° where PROJ's own
  // iteration stops short of the pole (Mollweide: 113 m off in x there,
  // see mollweide_test.cpp) or where the base inverse reads the pole
  // through an arcsine next to 1 (Eckert IV, the oblique stereographic:
  // up to 1.2e-6° back at the pole); PoleRoundTrip checks the poles.
  double grid_lat_limit = 90.0;
  // An ellipsoidal equal-area form: always the authalic sphere with
  // authalic latitudes (type 3), slot 12 not a sphere type.
  bool authalic_form = false;
};

constexpr int kNone = -1;

const AuxsCase kCases[] = {
    {"Equidistant_Cylindrical", &ko_prj_equidistant_cylindrical_auxs_vector, "+proj=eqc",
     slot::kCentralMeridian, slot::kStdParallel1, " +lat_ts=", 30.0, 1.0, 179.9, -90, 90,
     0.0, 1.01 * ko::kHalfPi, 0, 91},
    {"Miller_Cylindrical", &ko_prj_miller_cylindrical_auxs_vector, "+proj=mill",
     slot::kCentralMeridian, kNone, "", 0.0, 1.0, 179.9, -90, 90, 0.0, 3.0, 0, 91},
    {"Mollweide", &ko_prj_mollweide_auxs_vector, "+proj=moll", slot::kCentralMeridian, kNone, "",
     0.0, 1.0, 179.9, -90, 90, 2.9, 0.0, 0, 91, 80.0},
    {"Eckert_VI", &ko_prj_eckert_vi_auxs_vector, "+proj=eck6", slot::kCentralMeridian, kNone, "",
     0.0, 1.0, 179.9, -90, 90, 2.9, 0.0, 0, 91},
    {"Eckert_IV", &ko_prj_eckert_iv_auxs_vector, "+proj=eck4", slot::kCentralMeridian, kNone, "",
     0.0, 1.0, 179.9, -90, 90, 2.7, 0.0, 0, 91, 89.5},
    {"Van_der_Grinten_I", &ko_prj_van_der_grinten_i_auxs_vector, "+proj=vandg",
     slot::kCentralMeridian, kNone, "", 0.0, 1.0, 179.9, -90, 90, 2.3, 2.3, 0, 91},
    {"Stereographic", &ko_prj_stereographic_auxs_vector, "+proj=stere", slot::kCentralMeridian,
     slot::kLatOrigin, " +lat_0=", 40.0, 0.95, 170.0, -10, 90, 0.0, 0.0, 180, -40, 89.5},
    {"Azimuthal_Equidistant", &ko_prj_azimuthal_equidistant_auxs_vector, "+proj=aeqd",
     slot::kCentralMeridian, slot::kLatOrigin, " +lat_0=", -35.0, 1.0, 179.9, -90, 90,
     0.0, 1.01 * ko::kPi, 0, 91},
    {"Lambert_Azimuthal_Equal_Area", &ko_prj_lambert_azimuthal_eqarea_auxs_vector, "+proj=laea",
     slot::kCentralMeridian, slot::kLatOrigin, " +lat_0=", 52.0, 1.0, 150.0, -60, 90,
     2.01, 0.0, 180, -52},
    {"Orthographic", &ko_prj_orthographic_auxs_vector, "+proj=ortho", slot::kLonCenter,
     slot::kLatCenter, " +lat_0=", 25.0, 1.0, 60.0, -20, 80, 0.8, 0.8, 180, 0},
    {"Gnomonic", &ko_prj_gnomonic_auxs_vector, "+proj=gnom", slot::kLonCenter, slot::kLatCenter,
     " +lat_0=", -60.0, 1.0, 60.0, -90, -20, 0.0, 0.0, 0, 40},
    {"Hammer_Ellipsoidal", &ko_prj_hammer_ellipsoidal_vector, "+proj=hammer", slot::kCentralMeridian,
     kNone, "", 0.0, 1.0, 179.9, -90, 90, 2.9, 0.0, 0, 91, 90.0, true},
    {"Quartic_Authalic_Ellipsoidal", &ko_prj_quartic_authalic_ellipsoidal_vector, "+proj=qua_aut",
     slot::kCentralMeridian, kNone, "", 0.0, 1.0, 179.9, -90, 90, 3.2, 0.0, 0, 91, 90.0, true},
};

// The sphere types a form takes.
std::vector<int> types_of(const AuxsCase &c) {
  return c.authalic_form ? std::vector<int>{3} : std::vector<int>{0, 1, 2, 3};
}

Parms parms_of(const AuxsCase &c, double lon0_deg, double type) {
  Parms p{{c.lon_slot, lon0_deg * kDeg},
          {slot::kAuxSphereType, c.authalic_form ? 0.0 : type},
          {slot::kScaleFactor, c.scale}};
  if (c.lat_slot != kNone) p[c.lat_slot] = c.lat_deg * kDeg;
  return p;
}

#if defined(KO_HAVE_PROJ) && defined(KO_HAVE_GEOGRAPHICLIB)
// PROJ's spherical projection on the sphere of the given type; for type 3
// the points' latitudes (and the centre's) go to the authalic latitude
// first, by GeographicLib.
struct SphereOracle {
  const GeographicLib::Ellipsoid &ellipsoid;
  bool authalic;
  ProjOracle proj;
  XY forward(double lon, double lat) const {
    const double l = authalic ? ellipsoid.AuthalicLatitude(lat / kDeg) * kDeg : lat;
    return proj.forward(lon, l);
  }
};

// The radius of each type, from the ellipsoid's a and f, independently of
// the library: a; b = a (1 − f); the radius of the sphere of the
// ellipsoid's area, from GeographicLib's Geodesic::EllipsoidArea.
double radius_of(const GeographicLib::Ellipsoid &e, int type) {
  if (type == 0) return e.EquatorialRadius();
  if (type == 1) return e.EquatorialRadius() * (1.0 - e.Flattening());
  const GeographicLib::Geodesic g(e.EquatorialRadius(), e.Flattening());
  return std::sqrt(g.EllipsoidArea() / (4.0 * ko::kPi));
}

std::string proj_definition(const AuxsCase &c, const GeographicLib::Ellipsoid &e, int type,
                            double lon0_deg) {
  std::string def = std::string(c.proj) + " +R=" + num(radius_of(e, type)) + " +lon_0=" + num(lon0_deg);
  if (c.lat_slot != kNone) {
    const double lat = type == 3 ? e.AuthalicLatitude(c.lat_deg) : c.lat_deg;
    def += c.proj_lat + num(lat);
  }
  if (c.scale != 1.0) def += " +k_0=" + num(c.scale);
  return def;
}

// Every form and every sphere type on WGS 84 and Clarke 1866, centred at
// 150°E and 70°W: forward within 1e-6 m of PROJ, inverse of the library's
// own forward back within 1e-9 degree.
TEST(AuxiliarySphere, EveryTypeAgreesWithProj) {
  struct Figure {
    Spheroid sph;
    double a, rf;
  };
  for (const Figure &fig : {Figure{kWgs84, 6378137.0, 298.257223563},
                            Figure{kClarke1866, 6378206.4, 6378206.4 / (6378206.4 - 6356583.8)}}) {
    const GeographicLib::Ellipsoid ellipsoid(fig.a, 1.0 / fig.rf);
    for (const AuxsCase &c : kCases)
      for (int type : types_of(c))
        for (double lon0 : {150.0, -70.0}) {
          const std::string def = proj_definition(c, ellipsoid, type, lon0);
          SCOPED_TRACE(std::string(c.name) + " type " + std::to_string(type) + ": " + def);
          const SphereOracle oracle{ellipsoid, type == 3, ProjOracle(def)};
          ASSERT_TRUE(oracle.proj.ok());
          check_against(family_of(*c.vector), fig.sph, parms_of(c, lon0, type), oracle,
                        grid(lon0 - c.dlon, std::fmax(c.south, -c.grid_lat_limit), lon0 + c.dlon,
                             std::fmin(c.north, c.grid_lat_limit), 13, 13),
                        1e-6, 1e-9);
        }
  }
}
#endif

// The map's edges on each type: the refused forward point and the inverse
// of a point beyond the outline both come out HUGE_VAL, uncounted; the
// central meridian shifts the map (same x, y for the same distance from it);
// results with cached constants are those with temporary ones.
TEST(AuxiliarySphere, EdgesOfEachMap) {
  for (const AuxsCase &c : kCases)
    for (int type : types_of(c)) {
      SCOPED_TRACE(std::string(c.name) + " type " + std::to_string(type));
      const Family f = family_of(*c.vector);
      const Parms p = parms_of(c, 20.0, type);
      const Parms shifted = parms_of(c, -100.0, type);
      const double r = type == 0 ? kWgs84.pair[0] : 6.35e6;  // within 0.4% of every radius
      int count = -1;
      if (c.bad_lat <= 90.0) {
        const XY bad = forward1(f, kWgs84, p, (20.0 + c.bad_dlon) * kDeg, c.bad_lat * kDeg, &count);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(bad.x, HUGE_VAL);
        EXPECT_EQ(bad.y, HUGE_VAL);
      }
      if (c.off_x != 0.0 || c.off_y != 0.0) {
        const XY off = inverse1(f, kWgs84, p, c.off_x * r * 1.005, c.off_y * r * 1.005, &count);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(off.x, HUGE_VAL);
        EXPECT_EQ(off.y, HUGE_VAL);
      }
      // Latitudes beyond the poles and NaN are not points.
      for (const double lat : {1.6, -1.6, std::nan("")}) {
        forward1(f, kWgs84, p, 0.3, lat, &count);
        EXPECT_EQ(count, 0) << lat;
      }
      // The poles and the centre's meridian, each shifted with the meridian.
      const double lat0 = c.north > 85.0 ? 89.0 : c.north - 5.0;
      Cached cached(f, kWgs84, p);
      ASSERT_GE(cached.status, 0);
      for (const double dlon : {0.0, 0.5 * c.dlon, -0.25 * c.dlon})
        for (const double lat : {lat0, 0.5 * (c.south + c.north)}) {
          const XY here = forward1(f, kWgs84, p, (20.0 + dlon) * kDeg, lat * kDeg, &count);
          EXPECT_EQ(count, 1) << dlon << ", " << lat;
          const XY there = forward1(f, kWgs84, shifted, (-100.0 + dlon) * kDeg, lat * kDeg);
          EXPECT_NEAR(here.x, there.x, 1e-6);
          EXPECT_NEAR(here.y, there.y, 1e-6);
          double xy[2] = {(20.0 + dlon) * kDeg, lat * kDeg};
          EXPECT_EQ(f.forward(kWgs84.sph(), p.data(), 1, xy, cached.ivals(), cached.dvals()), 1);
          EXPECT_EQ(xy[0], here.x);
          EXPECT_EQ(xy[1], here.y);
        }
    }
}

// The poles that are on each map, forward and back on every type (on WGS
// 84 and Clarke 1866): the latitude comes back within 2e-6°, the measured
// worst printed (the arcsine next to 1 of the Eckert IV and stereographic
// inverses; the others come back within 1e-9°).
TEST(AuxiliarySphere, PoleRoundTrip) {
  double worst = 0.0;
  for (const AuxsCase &c : kCases)
    for (const Spheroid &sph : {kWgs84, kClarke1866})
      for (int type : types_of(c))
        for (const double pole : {-90.0, 90.0}) {
          if (pole < c.south || pole > c.north) continue;
          SCOPED_TRACE(std::string(c.name) + " type " + std::to_string(type) + " pole " + std::to_string(pole));
          const Family f = family_of(*c.vector);
          const Parms p = parms_of(c, 20.0, type);
          int count = -1;
          const XY xy = forward1(f, sph, p, 35.0 * kDeg, pole * kDeg, &count);
          EXPECT_EQ(count, 1);
          const XY back = inverse1(f, sph, p, xy.x, xy.y, &count);
          EXPECT_EQ(count, 1);
          const double d = std::fabs(back.y / kDeg - pole);
          const bool asin_pole = c.vector == &ko_prj_eckert_iv_auxs_vector ||
                                 c.vector == &ko_prj_stereographic_auxs_vector;
          EXPECT_LE(d, asin_pole ? 2e-6 : 1e-9);
          worst = std::fmax(worst, d);
        }
  std::printf("[ measured ] poles back within %.3g deg\n", worst);
}

// The sphere types really differ: on WGS 84 the radius b is 21 km shorter
// than a, the authalic radius 7 km shorter, and type 3 moves a point off
// the equator by the difference of the authalic and geodetic latitudes.
TEST(AuxiliarySphere, TypesGiveDifferentSpheres) {
  for (const AuxsCase &c : kCases) {
    if (c.authalic_form) continue;
    SCOPED_TRACE(c.name);
    const Family f = family_of(*c.vector);
    const double lon = 10.0 * kDeg, lat = (0.5 * (c.south + c.north) + 10.0) * kDeg;
    XY at[4];
    for (int type = 0; type <= 3; ++type) at[type] = forward1(f, kWgs84, parms_of(c, 0.0, type), lon, lat);
    for (int i = 0; i < 4; ++i)
      for (int j = i + 1; j < 4; ++j)
        EXPECT_GT(std::hypot(at[i].x - at[j].x, at[i].y - at[j].y), 1.0) << i << " " << j;
  }
}

// The ellipsoidal equal-area forms are not their spherical bases on the
// sphere of radius a, and they are equal-area on the ellipsoid: the area
// of a small cell at latitude φ on the map is the ellipsoid's,
// a² (1 − e²) cos φ / (1 − e² sin² φ)² dλ dφ (Snyder 1987, 3-14 and 3-23).
TEST(AuxiliarySphere, EllipsoidalFormsAreEqualArea) {
  const std::pair<const ko_projlist_entry *, const ko_projlist_entry *> pairs[] = {
      {&ko_prj_hammer_ellipsoidal_vector, &ko_prj_hammer_aitoff_vector},
      {&ko_prj_quartic_authalic_ellipsoidal_vector, &ko_prj_quartic_authalic_vector}};
  const double a = kWgs84.pair[0], e2 = kWgs84.pair[1];
  for (const auto &[form, base] : pairs) {
    SCOPED_TRACE(form->name);
    const Family f = family_of(*form);
    const Parms p{{slot::kCentralMeridian, 0.0}};
    const XY on_form = forward1(f, kWgs84, p, 0.7, 0.6);
    const XY on_base = forward1(family_of(*base), kWgs84, p, 0.7, 0.6);
    EXPECT_GT(std::hypot(on_form.x - on_base.x, on_form.y - on_base.y), 100.0);
    const double h = 1e-5;
    for (double lat : {-75.0, -20.0, 10.0, 50.0, 80.0})
      for (double lon : {-150.0, 0.0, 60.0}) {
        const double l = lon * kDeg, b = lat * kDeg;
        const XY e1 = forward1(f, kWgs84, p, l + h, b), w1 = forward1(f, kWgs84, p, l - h, b);
        const XY n1 = forward1(f, kWgs84, p, l, b + h), s1 = forward1(f, kWgs84, p, l, b - h);
        const double jac =
            ((e1.x - w1.x) * (n1.y - s1.y) - (e1.y - w1.y) * (n1.x - s1.x)) / (4 * h * h);
        const double w = 1.0 - e2 * std::sin(b) * std::sin(b);
        const double want = a * a * (1.0 - e2) * std::cos(b) / (w * w);
        EXPECT_NEAR(jac / want, 1.0, 1e-6) << lon << ", " << lat;
      }
  }
}

// Types other than 0 to 3 and definitions the base projection refuses
// convert nothing and leave the points as they were, for every type (type
// 3 changes latitudes in place only once the definition is known good).
TEST(AuxiliarySphere, RefusedDefinitions) {
  for (const AuxsCase &c : kCases) {
    SCOPED_TRACE(c.name);
    const Family f = family_of(*c.vector);
    if (!c.authalic_form)
      for (const double type : {4.0, -1.0, 0.5, 100.0, std::nan(""), HUGE_VAL})
        expect_refused(f, kWgs84, parms_of(c, 0.0, type), "sphere type");
    for (int type : types_of(c)) {
      Parms broken = parms_of(c, 0.0, type);
      broken[c.lon_slot] = std::nan("");
      expect_refused(f, kWgs84, broken, "NaN centre");
      // Another family's constants are not this map's.
      if (c.vector->constfunc == nullptr) continue;
      const Cached other(family_of(ko_prj_bonne_vector), kWgs84, Parms{{slot::kCentralMeridian, 0.0}});
      ASSERT_GE(other.status, 0);
      double xy[2] = {0.1, 0.2};
      EXPECT_EQ(f.forward(kWgs84.sph(), parms_of(c, 0.0, type).data(), 1, xy, other.ivals(), other.dvals()), 0);
      EXPECT_EQ(xy[1], 0.2);
    }
    double pt[2] = {0.1, 0.2};
    const Parms p = parms_of(c, 0.0, 3.0);
    EXPECT_EQ(f.forward(nullptr, p.data(), 1, pt, nullptr, nullptr), 0);
    EXPECT_EQ(f.inverse(kWgs84.sph(), nullptr, 1, pt, nullptr, nullptr), 0);
    EXPECT_EQ(f.forward(kWgs84.sph(), p.data(), 1, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(f.inverse(kWgs84.sph(), p.data(), -1, pt, nullptr, nullptr), 0);
    EXPECT_EQ(pt[1], 0.2);
  }
}

}  // namespace
