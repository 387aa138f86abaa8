// WKT1 of projected coordinate systems: PROJCS with its GEOGCS, PROJECTION,
// PARAMETERs and linear UNIT, and the two published systems whose text
// carries rounded false origins or scale.
#include "formats/wkt1.h"
#include "projections/projlist.h"

#include <cmath>

namespace {

using ko::text::TextOut;
using namespace ko::wkt1;

enum Slot { kFalseEasting = 0, kFalseNorthing = 1, kCentralMeridian = 2, kStdParallel1 = 3,
            kStdParallel2 = 4, kScaleFactor = 5, kLatitudeOfOrigin = 6 };

// Value of a slot's parameter in the system's units: angles in the
// geographic system's unit, lengths in the projected system's (the units
// the projected system gave its parameters).  NaN for an empty slot.
double slot_value(ko_parameter *const *parms, int slot) {
  return parms[slot] != nullptr ? ko_parameter_value(parms[slot]) : std::nan("");
}

// Angular slot compared in radians: value (in the geographic system's
// unit) times the unit's factor against degrees.
bool angle_is(ko_parameter *const *parms, int slot, double degrees) {
  return parms[slot] != nullptr &&
         ko::rel_eq(ko_parameter_value_si(parms[slot]), degrees * ko::kDegree);
}

// The Belgian Lambert 1972 grid as published has false origins of
// 150000.013 and 5400088.438 m; texts carry them as 150000.01256 and
// 5400088.4378.
bool fix_belge_lambert(ko_projcs *p, ko_parameter *const *parms) {
  const ko_projection *prj = ko_projcs_projection(p);
  if (!has_name(p, "Belge_Lambert_1972") || !has_name(ko_projcs_geogcs(p), "GCS_Belge_1972") ||
      !(has_name(prj, "Lambert_Conformal_Conic") || has_name(prj, "Lambert_Conformal_Conic_1SP")))
    return false;
  if (!ko::rel_eq(slot_value(parms, kFalseEasting), 150000.01256) ||
      !ko::rel_eq(slot_value(parms, kFalseNorthing), 5400088.4378) ||
      !angle_is(parms, kStdParallel1, 49.8333339) || !angle_is(parms, kStdParallel2, 51.16666723333333) ||
      !angle_is(parms, kCentralMeridian, 4.367486666666666) || !angle_is(parms, kLatitudeOfOrigin, 90.0))
    return false;
  ko_parameter_value_set(parms[kFalseEasting], 150000.013);
  ko_parameter_value_set(parms[kFalseNorthing], 5400088.438);
  return true;
}

// The British National Grid's scale factor is 0.9996012717; texts carry
// 0.999601272.
bool fix_british_national_grid(ko_projcs *p, ko_parameter *const *parms) {
  if (!has_name(p, "British_National_Grid") || !has_name(ko_projcs_geogcs(p), "GCS_OSGB_1936") ||
      !has_name(ko_projcs_projection(p), "Transverse_Mercator"))
    return false;
  if (!angle_is(parms, kCentralMeridian, -2.0) || !ko::rel_eq(slot_value(parms, kScaleFactor), 0.999601272))
    return false;
  ko_parameter_value_set(parms[kScaleFactor], 0.9996012717);
  return true;
}

// --- Parameter conventions of other WKT1 writers ---------------------------
//
// GDAL (and so PostGIS) writes some projections with parameters the
// library files under another name.  The synonym tables map names one to
// one; these rules map what depends on the projection.

// Gives a parameter another list identity (name and codes), keeping its
// value and the name it was read with.
void retarget(ko_parameter *p, int32_t code) {
  const ko_parmlist_entry *row = ko_parmlist_from_code(code);
  ko_header_set_name(p, row->name);
  ko_header_set_code_internal(p, code);
  ko_header_set_code_external(p, code);
}

void move_slot(ParameterSlots &parms, int from, int to, int32_t code) {
  auto f = static_cast<std::size_t>(from);
  auto t = static_cast<std::size_t>(to);
  parms.owned[t] = std::move(parms.owned[f]);
  parms.ptrs[t] = parms.ptrs[f];
  parms.ptrs[f] = nullptr;
  retarget(parms.ptrs[t], code);
}

bool slot_listed(std::span<const ko::ParmRule> rules, int slot) {
  for (const ko::ParmRule &rule : rules)
    if (rule.slot == slot) return true;
  return false;
}

// The natural origin of Albers, Lambert azimuthal equal-area and others is
// "latitude_of_center"/"longitude_of_center" there, and the centre of
// Orthographic and Gnomonic "latitude_of_origin"/"central_meridian": a
// slot the projection needs that is empty takes its partner from a slot
// the projection does not use.
void adopt_origin_or_center(std::span<const ko::ParmRule> rules, ParameterSlots &parms) {
  static constexpr struct {
    int32_t code;
    int32_t partners[2];
  } kPartners[] = {
      {100010, {100012, 0}},      {100011, {100012, 0}}, {100012, {100010, 100011}},
      {100021, {100022, 0}},      {100020, {100022, 0}}, {100022, {100021, 100020}},
  };
  for (const ko::ParmRule &rule : rules) {
    if (parms.ptrs[static_cast<std::size_t>(rule.slot)] != nullptr) continue;
    for (const auto &pair : kPartners) {
      if (pair.code != rule.code) continue;
      for (int32_t partner : pair.partners) {
        int slot = ko_parmlist_index_from_code(partner);
        ko_parameter *p = slot >= 0 ? parms.ptrs[static_cast<std::size_t>(slot)] : nullptr;
        if (p == nullptr || ko_object_code_internal(p) != partner || slot_listed(rules, slot)) continue;
        move_slot(parms, slot, rule.slot, rule.code);
        break;
      }
    }
  }
}

// "Polar_Stereographic" is both EPSG variants: with the origin at a pole it
// is variant A (scale at the pole), otherwise its latitude of origin is
// the latitude of true scale of variant B, and its scale factor (1) says
// nothing.  angle_factor is the geographic system's angular unit.
bool adopt_polar_variant_b(ko::Unique<ko_projection> &projection, ParameterSlots &parms,
                           double angle_factor) {
  constexpr int32_t kVariantA = 43066;
  constexpr int32_t kVariantB = 43067;
  ko_parameter *origin = parms.ptrs[kLatitudeOfOrigin];
  if (ko_object_code_internal(projection.get()) != kVariantA || origin == nullptr ||
      parms.ptrs[kStdParallel1] != nullptr ||
      ko::rel_eq(std::fabs(ko_parameter_value(origin) * angle_factor), ko::kHalfPi))
    return true;
  ko::Unique<ko_projection> variant_b(ko_projlist_projection_from_code(kVariantB, nullptr));
  if (variant_b == nullptr) return false;
  // Written back as it was read ("Polar_Stereographic"), it reads so again.
  ko_header_set_orig_name(variant_b.get(), ko_header_get_orig_name(projection.get()));
  ko_header_set_status(variant_b.get(), KO_STATUS_STRING);
  ko_header_set_str_type(variant_b.get(), static_cast<int32_t>(KO_STR_FMT_WKT1));
  projection = std::move(variant_b);
  move_slot(parms, kLatitudeOfOrigin, kStdParallel1, 100025);
  if (parms.ptrs[kScaleFactor] != nullptr && ko_parameter_value(parms.ptrs[kScaleFactor]) == 1.0) {
    parms.owned[kScaleFactor].reset();
    parms.ptrs[kScaleFactor] = nullptr;
  }
  return true;
}

}  // namespace

extern "C" {

int ko_wkt_projcs_to_str(const ko_projcs *p, const char *authority, uint32_t options, int size,
                         char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, p, KO_TYPE_PROJCS, "PROJCS", authority, options)) return out.finish();
  uint32_t child = level_of(options).child_options;
  put_child(out, ko_wkt_geogcs_to_str, ko_projcs_geogcs(p), authority, child);
  put_child(out, ko_wkt_projection_to_str, ko_projcs_projection(p), authority, child);
  put_parameters(out, ko_conversion_parameters_ptr(ko_projcs_conversion(p)), authority, child);
  put_child(out, ko_wkt_linunit_to_str, ko_projcs_unit(p), authority, child);
  put_child(out, ko_wkt_linunit_to_str, ko_projcs_vert_unit(p), authority, child, "LIN");
  put_tail(out, p, ko_projcs_metadata_vector(p), authority, options);
  return out.finish();
}

int ko_wkt_projcs_special_cases(ko_projcs *projcs) {
  ko_parameter **parms = ko_conversion_parameters_ptr(ko_projcs_conversion(projcs));
  if (parms == nullptr) return 0;
  return (fix_belge_lambert(projcs, parms) || fix_british_national_grid(projcs, parms)) ? 1 : 0;
}

// PROJCS["name", GEOGCS, PROJECTION, PARAMETER..., UNIT, LINUNIT]: errors
// 433, 441 and 438 without the geographic system, the projection or the
// unit; 406, 414 and 409 for a second one (a second UNIT counts as a
// second linear unit, like a second LINUNIT).  Parameter values are in
// the geographic system's angular unit and the system's linear unit.  With
// a LINUNIT the system has three axes: east and north in the unit, height
// up in the LINUNIT (the geographic system must be three-dimensional too).
ko_projcs *ko_wkt_projcs_from_tokens(const ko_wkt_tokens *tokens, const char *authority, int index,
                                     int *end_index, ko_err *err) {
  enum { kGeogcs, kProjection, kUnit, kLinunit, kParameter };
  static constexpr ChildKind kChildren[] = {{"GEOGCS", nullptr, 406},
                                         {"PROJECTION", nullptr, 414},
                                         {"UNIT", nullptr, 409},
                                         {"LINUNIT", nullptr, 409},
                                         {"PARAMETER", nullptr, 0}};
  NodeRead n(tokens, authority, err);
  ko::Unique<ko_geogcs> geogcs;
  ko::Unique<ko_projection> projection;
  ko::Unique<ko_linunit> unit;
  ko::Unique<ko_linunit> vert_unit;
  ParameterSlots parms;
  ko_metadata **metadata_ptr = nullptr;
  if (!n.open(index, "PROJCS", nullptr, kChildren) ||
      !read_child(n.r, n.c.first[kGeogcs], ko_wkt_geogcs_from_tokens, geogcs) ||
      !read_child(n.r, n.c.first[kProjection], ko_wkt_projection_from_tokens, projection) ||
      !read_child(n.r, n.c.first[kUnit], ko_wkt_linunit_from_tokens, unit) ||
      !read_child(n.r, n.c.first[kLinunit], ko_wkt_linunit_from_tokens, vert_unit) ||
      !read_parameters(n.r, n.node, n.c, kParameter, KO_PARM_CAT_PROJECTION, parms) ||
      !read_metadata(n.r, n.c, metadata_ptr))
    return nullptr;
  UniqueMetadata metadata(metadata_ptr);
  if (!n.read_extras()) return nullptr;
  const int missing = geogcs == nullptr ? 433 : projection == nullptr ? 441 : unit == nullptr ? 438 : 0;
  if (missing != 0) {
    report(err, missing, n.node.keyword, n.node.name);
    return nullptr;
  }
  const double angle_factor = ko_angunit_factor(ko_geogcs_unit(geogcs.get()));
  if (!adopt_polar_variant_b(projection, parms, angle_factor)) {
    ko::report_no_memory(err, n.node.keyword, n.node.name);
    return nullptr;
  }
  adopt_origin_or_center(ko::parm_rules(ko_object_code_internal(projection.get())), parms);
  ko::Unique<ko_conversion> conversion(construct(
      n.r, [&](ko_err *e) { return ko_conversion_new_errext(projection.get(), parms.ptrs.data(), e); }));
  if (conversion == nullptr) return nullptr;
  release_all(projection, parms);

  const int dimension = vert_unit != nullptr ? 3 : 2;
  std::array<ko::Unique<ko_axis>, KO_AXIS_MAX> axes;
  std::array<ko_axis *, KO_AXIS_MAX> axis_ptrs{};
  if (dimension == 3) {
    if (ko_axis_fill(axis_ptrs.data(), 3, KO_AXIS_KIND_PROJECTED, reinterpret_cast<const ko_unit *>(unit.get()),
                     reinterpret_cast<const ko_unit *>(vert_unit.get())) == 0) {
      ko::report_no_memory(err, n.node.keyword, n.node.name);
      return nullptr;
    }
    for (std::size_t i = 0; i < 3; ++i) axes[i].reset(axis_ptrs[i]);
  }
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_PROJCS, name);
  // In three dimensions the axes carry the units (they may differ).
  ko_linunit *system_unit = dimension == 2 ? unit.get() : nullptr;
  ko_projcs *p = construct(n.r, [&](ko_err *e) {
    return ko_projcs_ext_new_errext(name, geogcs.get(), conversion.get(), dimension,
                                    dimension == 3 ? axis_ptrs.data() : nullptr, system_unit,
                                    metadata.get(), nullptr, e);
  });
  if (p == nullptr) return nullptr;
  release_all(geogcs, conversion);
  if (system_unit != nullptr) unit.release();
  release_all(metadata, axes);
  ko_wkt_projcs_special_cases(n.done(p, end_index));
  return p;
}

KO_WKT1_DEFINE_FROM_STR(projcs, ko_projcs, "PROJCS", nullptr)

}  // extern "C"
