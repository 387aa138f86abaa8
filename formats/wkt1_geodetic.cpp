// WKT1 of the geodetic objects: SPHEROID (also read as ELLIPSOID), PRIMEM,
// DATUM and GEOGCS, with the renames applied after reading a datum or a
// geographic system.
#include "formats/wkt1.h"
#include "objects/geodetic.h"

#include <cmath>

namespace {

using ko::text::TextOut;
using namespace ko::wkt1;

constexpr double kGrad = 0.015707963267948967;  // radians per grad

// Inverse flattening values that stand for a sphere.
bool sphere_inverse_flattening(double x) { return std::fabs(x) <= ko::kTol || x == 1e12; }

bool unit_is_degree(const ko_angunit *unit) {
  return unit == nullptr || ko::rel_eq(ko_angunit_factor(unit), ko::kDegree);
}

template <class T>
using Unique = ko::Unique<T>;

}  // namespace

extern "C" {

// --- SPHEROID ----------------------------------------------------------------

// The semi-major axis is written in metres, whatever the spheroid's unit,
// so that the text reads back into an equal spheroid without a UNIT; the
// second number is the inverse flattening, "0.0" for a sphere.
int ko_wkt_spheroid_to_str(const ko_spheroid *s, const char *authority, uint32_t options, int size,
                           char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, s, KO_TYPE_SPHEROID, "SPHEROID", authority, options)) return out.finish();
  put_number(out, ko_spheroid_axis(s), options);
  double f = ko_spheroid_flattening(s);
  put_number(out, std::fabs(f) > ko::kTol ? 1.0 / f : 0.0, options);
  put_tail(out, s, nullptr, authority, options);
  return out.finish();
}

// SPHEROID["name", semi-major axis, inverse flattening]: errors 451 and
// 452 for a missing number, 420 for an axis not above 0, 421 for an
// inverse flattening that is neither a sphere's (0, or 1e12) nor at least
// 1.  A UNIT child gives the axis's unit (metres without).
ko_spheroid *ko_wkt_spheroid_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                         int index, int *end_index, ko_err *err) {
  static constexpr ChildKind kChildren[] = {{"UNIT", nullptr, 416}};
  NodeRead n(tokens, authority, err);
  double axis = 0.0;
  double inverse = 0.0;
  if (!n.open(index, "SPHEROID", "ELLIPSOID", kChildren) || !value_number(n.r, n.node, n.c, 0, 451, axis) ||
      !value_number(n.r, n.node, n.c, 1, 452, inverse))
    return nullptr;
  if (axis <= 0.0) {
    report(err, 420, n.node.keyword, value_text(n.r, n.c, 0));
    return nullptr;
  }
  double flattening = 0.0;
  if (!sphere_inverse_flattening(inverse)) {
    if (inverse < 1.0) {
      report(err, 421, n.node.keyword, value_text(n.r, n.c, 1));
      return nullptr;
    }
    flattening = 1.0 / inverse;
  }
  Unique<ko_linunit> unit;
  if (!read_child(n.r, n.c.first[0], ko_wkt_linunit_from_tokens, unit) || !n.read_extras())
    return nullptr;
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_SPHEROID, name);
  ko_spheroid *s = construct(n.r, [&](ko_err *e) {
    return ko_spheroid_ext_new_errext(name, unit.get(), axis, flattening, e);
  });
  if (s != nullptr) unit.release();
  return n.done(s, end_index);
}

KO_WKT1_DEFINE_FROM_STR(spheroid, ko_spheroid, "SPHEROID", "ELLIPSOID")

// --- PRIMEM ------------------------------------------------------------------

// The longitude is written in degrees.  A meridian kept in another angular
// unit is written in that unit, followed by its UNIT, so that it reads back
// into an equal meridian.
int ko_wkt_primem_to_str(const ko_primem *p, const char *authority, uint32_t options, int size,
                         char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, p, KO_TYPE_PRIMEM, "PRIMEM", authority, options)) return out.finish();
  const ko_angunit *unit = ko_primem_unit(p);
  double degrees = ko_primem_longitude(p);
  Level level = level_of(options);
  if (unit_is_degree(unit)) {
    put_number(out, degrees, options);
  } else {
    put_number(out, degrees * ko::kDegree / ko_angunit_factor(unit), options);
    put_child(out, ko_wkt_angunit_to_str, unit, authority, level.child_options);
  }
  put_tail(out, p, nullptr, authority, options);
  return out.finish();
}

// PRIMEM["name", longitude]: error 449 without the longitude, 419 beyond
// 180 degrees either way.  Without a UNIT child the longitude is in
// degrees.
ko_primem *ko_wkt_primem_from_tokens(const ko_wkt_tokens *tokens, const char *authority, int index,
                                     int *end_index, ko_err *err) {
  static constexpr ChildKind kChildren[] = {{"UNIT", nullptr, 416}};
  NodeRead n(tokens, authority, err);
  double longitude = 0.0;
  Unique<ko_angunit> unit;
  if (!n.open(index, "PRIMEM", nullptr, kChildren) || !value_number(n.r, n.node, n.c, 0, 449, longitude) ||
      !read_child(n.r, n.c.first[0], ko_wkt_angunit_from_tokens, unit) || !n.read_extras())
    return nullptr;
  if (unit == nullptr) {
    unit.reset(ko::new_degree());
    if (unit == nullptr) {
      ko::report_no_memory(err, n.node.keyword, n.node.name);
      return nullptr;
    }
  }
  if (std::fabs(ko_angunit_factor(unit.get()) / ko::kDegree * longitude) > 180.0) {
    report(err, 419, n.node.keyword, value_text(n.r, n.c, 0));
    return nullptr;
  }
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_PRIMEM, name);
  ko_primem *p = construct(
      n.r, [&](ko_err *e) { return ko_primem_ext_new_errext(name, unit.get(), longitude, e); });
  if (p != nullptr) unit.release();
  return n.done(p, end_index);
}

KO_WKT1_DEFINE_FROM_STR(primem, ko_primem, "PRIMEM", nullptr)

// --- DATUM -------------------------------------------------------------------

int ko_wkt_datum_to_str(const ko_datum *d, const char *authority, uint32_t options, int size,
                        char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, d, KO_TYPE_DATUM, "DATUM", authority, options)) return out.finish();
  put_child(out, ko_wkt_spheroid_to_str, ko_datum_spheroid(d), authority,
            level_of(options).child_options);
  put_tail(out, d, nullptr, authority, options);
  return out.finish();
}

// The Hong Kong 1963 datum is known in two realisations; on the
// International 1924 spheroid it is the 1963(67) one.
int ko_wkt_datum_special_cases(ko_datum *datum) {
  ko_spheroid *s = ko_datum_spheroid(datum);
  if (s == nullptr || !has_name(datum, "D_Hong_Kong_1963")) return 0;
  if (!has_name(s, "International_1924") ||
      !ko::rel_eq(ko_spheroid_axis(s), 6378388.0) ||
      !ko::rel_eq(ko_spheroid_flattening(s), 0.003367003367003367))
    return 0;
  ko_header_set_name(datum, "D_Hong_Kong_1963_67");
  return 1;
}

// DATUM["name", SPHEROID[...]]: error 442 without the spheroid, 415 for a
// second one.
ko_datum *ko_wkt_datum_from_tokens(const ko_wkt_tokens *tokens, const char *authority, int index,
                                   int *end_index, ko_err *err) {
  static constexpr ChildKind kChildren[] = {{"SPHEROID", "ELLIPSOID", 415}};
  NodeRead n(tokens, authority, err);
  Unique<ko_spheroid> spheroid;
  if (!n.open(index, "DATUM", nullptr, kChildren) ||
      !read_child(n.r, n.c.first[0], ko_wkt_spheroid_from_tokens, spheroid) || !n.read_extras())
    return nullptr;
  if (spheroid == nullptr) {
    report(err, 442, n.node.keyword, n.node.name);
    return nullptr;
  }
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_DATUM, name);
  ko_datum *d = construct(n.r, [&](ko_err *e) { return ko_datum_new_errext(name, spheroid.get(), e); });
  if (d == nullptr) return nullptr;
  spheroid.release();
  ko_wkt_datum_special_cases(n.done(d, end_index));
  return d;
}

KO_WKT1_DEFINE_FROM_STR(datum, ko_datum, "DATUM", nullptr)

// --- GEOGCS ------------------------------------------------------------------

int ko_wkt_geogcs_to_str(const ko_geogcs *g, const char *authority, uint32_t options, int size,
                         char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, g, KO_TYPE_GEOGCS, "GEOGCS", authority, options)) return out.finish();
  uint32_t child = level_of(options).child_options;
  put_child(out, ko_wkt_datum_to_str, ko_geogcs_datum(g), authority, child);
  put_child(out, ko_wkt_primem_to_str, ko_geogcs_primem(g), authority, child);
  put_child(out, ko_wkt_angunit_to_str, ko_geogcs_unit(g), authority, child);
  put_child(out, ko_wkt_linunit_to_str, ko_geogcs_vert_unit(g), authority, child, "LIN");
  put_tail(out, g, ko_geogcs_metadata_vector(g), authority, options);
  return out.finish();
}

// Names of geographic systems that only the unit or the datum tells apart
// from a variant: with a Greenwich meridian, this unit and this datum, the
// first name is the second.
int ko_wkt_geogcs_special_cases(ko_geogcs *geogcs) {
  static constexpr struct {
    const char *name;
    double unit_factor;
    const char *datum;
    const char *renamed;
  } kRenames[] = {
      {"GCS_Hong_Kong_1963", ko::kDegree, "D_Hong_Kong_1963_67", "GCS_Hong_Kong_1963_67"},
      {"GCS_Carthage", kGrad, "D_Carthage", "GCS_Carthage_Grad"},
      {"GCS_Voirol_1875", kGrad, "D_Voirol_1875", "GCS_Voirol_1875_Grad"},
      {"GCS_Voirol_1879", kGrad, "D_Voirol_1879", "GCS_Voirol_1879_Grad"},
  };
  if (ko_geogcs_p(geogcs) == 0 || !ko::rel_eq(ko_primem_longitude(ko_geogcs_primem(geogcs)), 0.0))
    return 0;
  const ko_datum *datum = ko_geogcs_datum(geogcs);
  double factor = ko_angunit_factor(ko_geogcs_unit(geogcs));
  for (const auto &rename : kRenames) {
    if (has_name(geogcs, rename.name) && ko::rel_eq(factor, rename.unit_factor) &&
        has_name(datum, rename.datum)) {
      ko_header_set_name(geogcs, rename.renamed);
      return 1;
    }
  }
  return 0;
}

// GEOGCS["name", DATUM, PRIMEM, UNIT, LINUNIT]: error 431 without the
// datum.  A missing PRIMEM is Greenwich and a missing UNIT the degree.
// With a LINUNIT (the unit of ellipsoidal heights) the system has three
// axes: longitude east and latitude north in the angular unit, height up
// in the linear one.
ko_geogcs *ko_wkt_geogcs_from_tokens(const ko_wkt_tokens *tokens, const char *authority, int index,
                                     int *end_index, ko_err *err) {
  enum { kDatum, kPrimem, kUnit, kLinunit };
  static constexpr ChildKind kChildren[] = {
      {"DATUM", nullptr, 405}, {"PRIMEM", nullptr, 412}, {"UNIT", nullptr, 401}, {"LINUNIT", nullptr, 409}};
  NodeRead n(tokens, authority, err);
  Unique<ko_datum> datum;
  Unique<ko_primem> primem;
  Unique<ko_angunit> unit;
  Unique<ko_linunit> vert_unit;
  ko_metadata **metadata_ptr = nullptr;
  if (!n.open(index, "GEOGCS", nullptr, kChildren) ||
      !read_datum_and_primem(n, kDatum, kPrimem, datum, primem) ||
      !read_child(n.r, n.c.first[kUnit], ko_wkt_angunit_from_tokens, unit) ||
      !read_child(n.r, n.c.first[kLinunit], ko_wkt_linunit_from_tokens, vert_unit) ||
      !read_metadata(n.r, n.c, metadata_ptr))
    return nullptr;
  UniqueMetadata metadata(metadata_ptr);
  if (!n.read_extras()) return nullptr;
  int dimension = vert_unit != nullptr ? 3 : 2;
  std::array<Unique<ko_axis>, KO_AXIS_MAX> axes;
  std::array<ko_axis *, KO_AXIS_MAX> axis_ptrs{};
  if (dimension == 3) {
    if (ko_axis_fill(axis_ptrs.data(), 3, KO_AXIS_KIND_GEOGRAPHIC,
                     reinterpret_cast<const ko_unit *>(unit.get()),
                     reinterpret_cast<const ko_unit *>(vert_unit.get())) == 0) {
      ko::report_no_memory(err, n.node.keyword, n.node.name);
      return nullptr;
    }
    for (std::size_t i = 0; i < 3; ++i) axes[i].reset(axis_ptrs[i]);
  }
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_GEOGCS, name);
  ko_geogcs *g = construct(n.r, [&](ko_err *e) {
    return ko_geogcs_ext_new_errext(name, datum.get(), primem.get(), dimension,
                                    dimension == 3 ? axis_ptrs.data() : nullptr, unit.get(),
                                    metadata.get(), nullptr, e);
  });
  if (g == nullptr) return nullptr;
  release_all(datum, primem, unit, metadata, axes);
  ko_wkt_geogcs_special_cases(n.done(g, end_index));
  return g;
}

KO_WKT1_DEFINE_FROM_STR(geogcs, ko_geogcs, "GEOGCS", nullptr)

}  // extern "C"
