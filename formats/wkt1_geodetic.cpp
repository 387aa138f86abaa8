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
  if (skip_object(s, KO_TYPE_SPHEROID, options)) return out.finish();
  char name[KO_NAME_SIZE];
  put_header(out, "SPHEROID", choose_name(s, authority, options, name));
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
  static constexpr ChildSpec kSpecs[] = {{"UNIT", nullptr, 416}};
  Reader r{tokens, authority, err};
  Node node;
  Children c;
  Extras extras;
  double axis = 0.0;
  double inverse = 0.0;
  if (tokens == nullptr || !open_node(r, index, "SPHEROID", "ELLIPSOID", node) ||
      !scan_children(r, node, kSpecs, c) || !value_number(r, node, c, 0, 451, axis) ||
      !value_number(r, node, c, 1, 452, inverse))
    return nullptr;
  if (axis <= 0.0) {
    report(err, 420, node.keyword, value_text(r, c, 0));
    return nullptr;
  }
  double flattening = 0.0;
  if (!sphere_inverse_flattening(inverse)) {
    if (inverse < 1.0) {
      report(err, 421, node.keyword, value_text(r, c, 1));
      return nullptr;
    }
    flattening = 1.0 / inverse;
  }
  Unique<ko_linunit> unit;
  if (!read_child(r, c.first[0], ko_wkt_linunit_from_tokens, unit) || !read_extras(r, c, extras))
    return nullptr;
  char name[KO_NAME_SIZE];
  library_name(r, KO_TYPE_SPHEROID, node, name);
  ko_spheroid *s = construct(r, [&](ko_err *e) {
    return ko_spheroid_ext_new_errext(name, unit.get(), axis, flattening, e);
  });
  if (s == nullptr) return nullptr;
  unit.release();
  set_end(end_index, node);
  return static_cast<ko_spheroid *>(finish_object(s, node, extras));
}

ko_spheroid *ko_wkt_spheroid_from_str(const char *text, const char *authority, ko_err *err) {
  return read_text(text, authority, err, "SPHEROID", "ELLIPSOID", ko_wkt_spheroid_from_tokens);
}

// --- PRIMEM ------------------------------------------------------------------

// The longitude is written in degrees.  A meridian kept in another angular
// unit is written in that unit, followed by its UNIT, so that it reads back
// into an equal meridian.
int ko_wkt_primem_to_str(const ko_primem *p, const char *authority, uint32_t options, int size,
                         char *buf) {
  TextOut out(buf, size);
  if (skip_object(p, KO_TYPE_PRIMEM, options)) return out.finish();
  char name[KO_NAME_SIZE];
  put_header(out, "PRIMEM", choose_name(p, authority, options, name));
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
  static constexpr ChildSpec kSpecs[] = {{"UNIT", nullptr, 416}};
  Reader r{tokens, authority, err};
  Node node;
  Children c;
  Extras extras;
  double longitude = 0.0;
  Unique<ko_angunit> unit;
  if (tokens == nullptr || !open_node(r, index, "PRIMEM", nullptr, node) ||
      !scan_children(r, node, kSpecs, c) || !value_number(r, node, c, 0, 449, longitude) ||
      !read_child(r, c.first[0], ko_wkt_angunit_from_tokens, unit) || !read_extras(r, c, extras))
    return nullptr;
  if (unit == nullptr) {
    unit.reset(ko::new_degree());
    if (unit == nullptr) {
      ko::report_no_memory(err, node.keyword, node.name);
      return nullptr;
    }
  }
  if (std::fabs(ko_angunit_factor(unit.get()) / ko::kDegree * longitude) > 180.0) {
    report(err, 419, node.keyword, value_text(r, c, 0));
    return nullptr;
  }
  char name[KO_NAME_SIZE];
  library_name(r, KO_TYPE_PRIMEM, node, name);
  ko_primem *p = construct(
      r, [&](ko_err *e) { return ko_primem_ext_new_errext(name, unit.get(), longitude, e); });
  if (p == nullptr) return nullptr;
  unit.release();
  set_end(end_index, node);
  return static_cast<ko_primem *>(finish_object(p, node, extras));
}

ko_primem *ko_wkt_primem_from_str(const char *text, const char *authority, ko_err *err) {
  return read_text(text, authority, err, "PRIMEM", nullptr, ko_wkt_primem_from_tokens);
}

// --- DATUM -------------------------------------------------------------------

int ko_wkt_datum_to_str(const ko_datum *d, const char *authority, uint32_t options, int size,
                        char *buf) {
  TextOut out(buf, size);
  if (skip_object(d, KO_TYPE_DATUM, options)) return out.finish();
  char name[KO_NAME_SIZE];
  put_header(out, "DATUM", choose_name(d, authority, options, name));
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
  static constexpr ChildSpec kSpecs[] = {{"SPHEROID", "ELLIPSOID", 415}};
  Reader r{tokens, authority, err};
  Node node;
  Children c;
  Extras extras;
  Unique<ko_spheroid> spheroid;
  if (tokens == nullptr || !open_node(r, index, "DATUM", nullptr, node) ||
      !scan_children(r, node, kSpecs, c) ||
      !read_child(r, c.first[0], ko_wkt_spheroid_from_tokens, spheroid) ||
      !read_extras(r, c, extras))
    return nullptr;
  if (spheroid == nullptr) {
    report(err, 442, node.keyword, node.name);
    return nullptr;
  }
  char name[KO_NAME_SIZE];
  library_name(r, KO_TYPE_DATUM, node, name);
  ko_datum *d = construct(r, [&](ko_err *e) { return ko_datum_new_errext(name, spheroid.get(), e); });
  if (d == nullptr) return nullptr;
  spheroid.release();
  set_end(end_index, node);
  finish_object(d, node, extras);
  ko_wkt_datum_special_cases(d);
  return d;
}

ko_datum *ko_wkt_datum_from_str(const char *text, const char *authority, ko_err *err) {
  return read_text(text, authority, err, "DATUM", nullptr, ko_wkt_datum_from_tokens);
}

// --- GEOGCS ------------------------------------------------------------------

int ko_wkt_geogcs_to_str(const ko_geogcs *g, const char *authority, uint32_t options, int size,
                         char *buf) {
  TextOut out(buf, size);
  if (skip_object(g, KO_TYPE_GEOGCS, options)) return out.finish();
  char name[KO_NAME_SIZE];
  put_header(out, "GEOGCS", choose_name(g, authority, options, name));
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
  static constexpr ChildSpec kSpecs[] = {
      {"DATUM", nullptr, 405}, {"PRIMEM", nullptr, 412}, {"UNIT", nullptr, 401}, {"LINUNIT", nullptr, 409}};
  Reader r{tokens, authority, err};
  Node node;
  Children c;
  Extras extras;
  Unique<ko_datum> datum;
  Unique<ko_primem> primem;
  Unique<ko_angunit> unit;
  Unique<ko_linunit> vert_unit;
  ko_metadata **metadata_ptr = nullptr;
  if (tokens == nullptr || !open_node(r, index, "GEOGCS", nullptr, node) ||
      !scan_children(r, node, kSpecs, c) ||
      !read_child(r, c.first[kDatum], ko_wkt_datum_from_tokens, datum) ||
      !read_child(r, c.first[kPrimem], ko_wkt_primem_from_tokens, primem) ||
      !read_child(r, c.first[kUnit], ko_wkt_angunit_from_tokens, unit) ||
      !read_child(r, c.first[kLinunit], ko_wkt_linunit_from_tokens, vert_unit) ||
      !read_metadata(r, c, metadata_ptr))
    return nullptr;
  UniqueMetadata metadata(metadata_ptr);
  if (!read_extras(r, c, extras)) return nullptr;
  if (datum == nullptr) {
    report(err, 431, node.keyword, node.name);
    return nullptr;
  }
  int dimension = vert_unit != nullptr ? 3 : 2;
  std::array<Unique<ko_axis>, KO_AXIS_MAX> axes;
  std::array<ko_axis *, KO_AXIS_MAX> axis_ptrs{};
  if (dimension == 3) {
    if (ko_axis_fill(axis_ptrs.data(), 3, KO_AXIS_KIND_GEOGRAPHIC,
                     reinterpret_cast<const ko_unit *>(unit.get()),
                     reinterpret_cast<const ko_unit *>(vert_unit.get())) == 0) {
      ko::report_no_memory(err, node.keyword, node.name);
      return nullptr;
    }
    for (int i = 0; i < 3; ++i) axes[static_cast<std::size_t>(i)].reset(axis_ptrs[static_cast<std::size_t>(i)]);
  }
  char name[KO_NAME_SIZE];
  library_name(r, KO_TYPE_GEOGCS, node, name);
  ko_geogcs *g = construct(r, [&](ko_err *e) {
    return ko_geogcs_ext_new_errext(name, datum.get(), primem.get(), dimension,
                                    dimension == 3 ? axis_ptrs.data() : nullptr, unit.get(),
                                    metadata.get(), nullptr, e);
  });
  if (g == nullptr) return nullptr;
  datum.release();
  primem.release();
  unit.release();
  metadata.release();
  for (auto &axis : axes) axis.release();
  set_end(end_index, node);
  finish_object(g, node, extras);
  ko_wkt_geogcs_special_cases(g);
  return g;
}

ko_geogcs *ko_wkt_geogcs_from_str(const char *text, const char *authority, ko_err *err) {
  return read_text(text, authority, err, "GEOGCS", nullptr, ko_wkt_geogcs_from_tokens);
}

}  // extern "C"
