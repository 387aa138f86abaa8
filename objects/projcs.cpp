// Projected coordinate system: a geographic system and a conversion, with
// axes, one linear unit, metadata, remark and the projection constants that
// the point conversion loads on first use.
#include "objects/composite.h"
#include "objects/parameter.h"
#include "objects/projcs.h"
#include "objects/system_parts.h"

#include <array>

namespace {

constexpr const char *kSource = "ko_projcs_ext_new_errext";

constexpr int32_t kHotineAzimuthCenter = 43037;
constexpr int32_t kRectifiedSkewCenter = 43054;
constexpr int kSlotXYPlaneRotation = 14;
constexpr int32_t kUnityCode = 9201;

ko_unit *axis_unit(ko_axis *const *axes, int index) {
  return axes != nullptr ? ko_axis_unit(axes[index]) : nullptr;
}

// Units agree when either is absent or both are equal (name and factor).
bool units_agree(const void *a, const void *b) {
  if (a == nullptr || b == nullptr) return true;
  return ko_unit_eq(static_cast<const ko_unit *>(a), static_cast<const ko_unit *>(b)) != 0;
}

// Both absent, or both present and equal.
bool units_match(const void *a, const void *b) {
  if (a == nullptr || b == nullptr) return a == b;
  return ko_unit_eq(static_cast<const ko_unit *>(a), static_cast<const ko_unit *>(b)) != 0;
}

// How a new system holds its linear unit.
struct UnitChoice {
  ko::Unique<ko_linunit> made;   // a unit made here (clone of an axis unit or "Meter")
  ko_linunit *unit = nullptr;    // the unit field: given, made, or null
  bool clear_axes = false;       // the axes' units are dropped in favour of the field
  bool out_of_memory = false;
};

// The unit field: with axes whose units agree (always in two dimensions)
// the system keeps one unit -- the given one, else a clone of the axes'
// unit, else a new "Meter" -- and the axes lose theirs; three axes whose
// horizontal and vertical units differ keep their units when no unit is
// given.  The axes themselves are changed only once the system exists.
UnitChoice choose_unit(ko_linunit *given, ko_axis *const *axes, int dimension) {
  UnitChoice choice;
  ko_unit *horizontal = axis_unit(axes, 0);
  ko_unit *vertical = dimension == 3 ? axis_unit(axes, 2) : nullptr;
  if (axes != nullptr && given == nullptr && !units_agree(horizontal, vertical)) return choice;
  choice.clear_axes = axes != nullptr;
  if (given != nullptr) {
    choice.unit = given;
    return choice;
  }
  ko_unit *source = horizontal != nullptr ? horizontal : vertical;
  choice.made.reset(source != nullptr ? reinterpret_cast<ko_linunit *>(ko::unit_clone(source))
                                      : ko::new_meter());
  choice.unit = choice.made.get();
  choice.out_of_memory = choice.unit == nullptr;
  return choice;
}

// The unit that measures the system's vertical coordinate.
const void *vertical_unit_of(const UnitChoice &choice, ko_axis *const *axes) {
  return choice.unit != nullptr ? static_cast<const void *>(choice.unit) : axis_unit(axes, 2);
}

// ---------------------------------------------------------------------------
// Parameter fix: prepared in full before anything changes, so that running
// out of memory leaves the conversion as it was.

struct ParameterFix {
  std::array<ko::Unique<ko_unit>, KO_PARM_COUNT> units;  // units for unitless parameters
  std::array<double, KO_PARM_COUNT> factors{};           // default factors; 0: leave
  bool ok = true;
};

ko_unit *unit_for(uint32_t unit_type, const ko_unit *angular, const ko_unit *linear) {
  switch (unit_type) {
    case KO_PARM_UNIT_ANGLE:
      return angular != nullptr ? ko::unit_clone(angular)
                                : reinterpret_cast<ko_unit *>(ko::new_degree());
    case KO_PARM_UNIT_LENGTH:
      return linear != nullptr ? ko::unit_clone(linear)
                               : reinterpret_cast<ko_unit *>(ko::new_meter());
    default:
      return reinterpret_cast<ko_unit *>(ko_scaleunit_new_code(kUnityCode));
  }
}

double factor_for(uint32_t unit_type, const ko_unit *angular, const ko_unit *linear) {
  switch (unit_type) {
    case KO_PARM_UNIT_ANGLE:
      return ko::unit_factor_or(angular, KO_TYPE_ANGUNIT, ko::kDegreeFactor);
    case KO_PARM_UNIT_LENGTH:
      return ko::unit_factor_or(linear, KO_TYPE_LINUNIT, 1.0);
    default:
      return 1.0;
  }
}

ParameterFix plan_parameter_fix(const ko_conversion &conv, const ko_unit *angular,
                                const ko_unit *linear) {
  ParameterFix fix;
  for (int i = 0; i < KO_PARM_COUNT; ++i) {
    const ko_parameter *p = conv.parms[i];
    uint32_t unit_type = ko_parameter_unit_type(p);
    if (unit_type == KO_PARM_UNIT_NONE) continue;
    fix.factors[i] = factor_for(unit_type, angular, linear);
    if (ko_parameter_unit(p) != nullptr) continue;
    fix.units[i].reset(unit_for(unit_type, angular, linear));
    if (fix.units[i] == nullptr) fix.ok = false;
  }
  return fix;
}

void apply_parameter_fix(ko_conversion &conv, ParameterFix &fix) {
  for (int i = 0; i < KO_PARM_COUNT; ++i) {
    if (fix.units[i] != nullptr) ko_parameter_unit_set(conv.parms[i], fix.units[i].release());
    if (fix.factors[i] != 0.0) ko_parameter_dflt_factor_set(conv.parms[i], fix.factors[i]);
  }
}

const ko_unit *angular_unit_of(const ko_geogcs *g) {
  return reinterpret_cast<const ko_unit *>(ko_geogcs_unit(g));
}

// ---------------------------------------------------------------------------
// Special case: Hotine_Oblique_Mercator_Azimuth_Center with an
// XY_Plane_Rotation is Rectified_Skew_Orthomorphic_Center.  The only code
// ko_projection_eq pairs with 43037 is 43037 itself, so the code decides.

bool needs_rso(const ko_conversion &conv) {
  return ko_object_code_internal(conv.projection) == kHotineAzimuthCenter &&
         conv.parms[kSlotXYPlaneRotation] != nullptr;
}

// The replacement projection, or null when none is needed; ok is false
// when one is needed and memory ran out.
ko::Unique<ko_projection> plan_special_case(const ko_conversion &conv, bool &ok) {
  ok = true;
  if (!needs_rso(conv)) return nullptr;
  ko::Unique<ko_projection> rso(ko_projlist_projection_from_code(kRectifiedSkewCenter, nullptr));
  ok = rso != nullptr;
  return rso;
}

void apply_special_case(ko_conversion &conv, ko::Unique<ko_projection> &replacement) {
  if (replacement != nullptr) ko_conversion_method_set(&conv, replacement.release());
}

// Name-free comparison of geographic systems: what ko_geogcs_eq compares
// after the names.
bool geogcs_eqnn(const ko_geogcs *a, const ko_geogcs *b) {
  if (ko_datum_eq(a->datum, b->datum) == 0 || ko_primem_eq(a->primem, b->primem) == 0)
    return false;
  if (!units_match(ko_geogcs_unit(a), ko_geogcs_unit(b))) return false;
  return a->dimension == b->dimension &&
         units_match(ko_geogcs_vert_unit(a), ko_geogcs_vert_unit(b));
}

// The checks of the constructor's arguments in their order; the number of
// the first that fails, or 0.  A given unit must be linear and agree with
// the first axis's unit and, in three dimensions, the first and third
// axes' units with each other and with it.
int argument_error(const ko_geogcs *geogcs, const ko_conversion *conversion, int dimension,
                   ko_axis *const *axes, const ko_linunit *unit) {
  if (ko::live_geogcs(geogcs) == nullptr) return 331;
  if (ko::live_conversion(conversion) == nullptr) return 328;
  if ((dimension != 2 && dimension != 3) || dimension > geogcs->dimension) return 488;
  if (int number = ko_axis_check_order(axes, dimension, KO_AXIS_KIND_PROJECTED); number != 0)
    return number;
  if (unit == nullptr) return 0;
  if (ko::live_unit(unit, KO_TYPE_LINUNIT) == nullptr) return 323;
  ko_unit *horizontal = axis_unit(axes, 0);
  ko_unit *vertical = dimension == 3 ? axis_unit(axes, 2) : nullptr;
  bool agree = units_agree(unit, horizontal) && units_agree(horizontal, vertical) &&
               units_agree(unit, vertical);
  return agree ? 0 : 477;
}

}  // namespace

extern "C" {

ko_projcs *ko_projcs_ext_new_errext(const char *name, ko_geogcs *geogcs,
                                    ko_conversion *conversion, int dimension, ko_axis **axes,
                                    ko_linunit *unit, ko_metadata **metadata, ko_remark *remark,
                                    ko_err *err) {
  if (name == nullptr) name = "";
  ko::errext_prologue(err, kSource, name);
  if (int number = argument_error(geogcs, conversion, dimension, axes, unit); number != 0) {
    ko::report_bad_argument(err, number, kSource, name);
    return nullptr;
  }
  UnitChoice choice = choose_unit(unit, axes, dimension);
  if (!choice.out_of_memory && dimension == 3 &&
      !units_agree(ko_geogcs_vert_unit(geogcs), vertical_unit_of(choice, axes))) {
    ko::report_bad_argument(err, 477, kSource, name);
    return nullptr;
  }

  // Everything that may run out of memory is made before the system, so
  // that a failure leaves the caller's objects as they were.
  ko_conversion &conv = *conversion;
  const ko_unit *linear = choice.unit != nullptr ? reinterpret_cast<const ko_unit *>(choice.unit)
                                                 : axis_unit(axes, 0);
  ParameterFix fix = plan_parameter_fix(conv, angular_unit_of(geogcs), linear);
  bool special_ok = true;
  ko::Unique<ko_projection> replacement = plan_special_case(conv, special_ok);
  bool ready = !choice.out_of_memory && fix.ok && special_ok;
  auto *p = ready ? ko::make_object<ko_projcs>(KO_TYPE_PROJCS, name) : nullptr;
  if (p == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }

  choice.made.release();
  p->geogcs = geogcs;
  p->conversion = conversion;
  p->dimension = dimension;
  for (int i = 0; axes != nullptr && i < dimension; ++i) {
    p->axes[i] = axes[i];
    if (choice.clear_axes) ko_axis_unit_set(axes[i], nullptr);
  }
  p->unit = choice.unit;
  p->metadata = metadata;
  p->remark = remark;
  p->constants = nullptr;
  p->constants_state = kProjConstantsNotLoaded;
  apply_parameter_fix(conv, fix);
  apply_special_case(conv, replacement);
  return p;
}

ko_projcs *ko_projcs_ext_new(const char *name, ko_geogcs *geogcs, ko_conversion *conversion,
                             int dimension, ko_axis **axes, ko_linunit *unit,
                             ko_metadata **metadata, ko_remark *remark) {
  return ko_projcs_ext_new_errext(name, geogcs, conversion, dimension, axes, unit, metadata,
                                  remark, nullptr);
}

ko_projcs *ko_projcs_new_errext(const char *name, ko_geogcs *geogcs, ko_conversion *conversion,
                                ko_linunit *unit, ko_err *err) {
  return ko_projcs_ext_new_errext(name, geogcs, conversion, 2, nullptr, unit, nullptr, nullptr,
                                  err);
}

ko_projcs *ko_projcs_new(const char *name, ko_geogcs *geogcs, ko_conversion *conversion,
                         ko_linunit *unit) {
  return ko_projcs_new_errext(name, geogcs, conversion, unit, nullptr);
}

int ko_projcs_p(const void *obj) { return ko::live_projcs(obj) != nullptr; }

ko_projcs *ko_projcs_clone(const ko_projcs *p) {
  const ko_projcs *src = ko::live_projcs(p);
  if (src == nullptr) return nullptr;
  ko::Unique<ko_geogcs> geogcs;
  ko::Unique<ko_conversion> conversion;
  ko::Unique<ko_linunit> unit;
  ko::SystemPartsClone parts(src->axes, src->dimension, src->metadata, src->remark);
  bool ok = parts.ok() && ko::clone_part(src->geogcs, geogcs, ko_geogcs_clone) &&
            ko::clone_part(src->conversion, conversion, ko_conversion_clone) &&
            ko::clone_part(src->unit, unit, ko_linunit_clone);
  if (!ok) return nullptr;
  ko_projcs *copy = ko_projcs_ext_new_errext(ko_header_get_name(src), geogcs.get(),
                                             conversion.get(), src->dimension, parts.axes(),
                                             unit.get(), parts.metadata(), parts.remark(),
                                             nullptr);
  if (copy == nullptr) return nullptr;
  geogcs.release();
  conversion.release();
  unit.release();
  parts.release();
  return ko::with_header_of(copy, src, ko_projcs_del);
}

ko_projcs *ko_projcs_del(ko_projcs *p) {
  p = ko::live_projcs(p);
  if (p == nullptr) return nullptr;
  ko_projcs_unload_constants(p);
  for (int i = 0; i < p->dimension && i < KO_AXIS_MAX; ++i) ko_axis_del(p->axes[i]);
  ko_geogcs_del(p->geogcs);
  ko_conversion_del(p->conversion);
  ko_linunit_del(p->unit);
  ko_metadata_vector_del(p->metadata);
  ko_remark_del(p->remark);
  return ko::release_object(p);
}

int ko_projcs_eq(const ko_projcs *a, const ko_projcs *b) {
  const ko_projcs *pa = ko::live_projcs(a);
  const ko_projcs *pb = ko::live_projcs(b);
  if (pa == nullptr || pb == nullptr) return 0;
  if (ko_strcmp_ci(ko_header_get_name(pa), ko_header_get_name(pb)) != 0) return 0;
  return ko_projcs_eqnn(pa, pb);
}

int ko_projcs_eqnn(const ko_projcs *a, const ko_projcs *b) {
  const ko_projcs *pa = ko::live_projcs(a);
  const ko_projcs *pb = ko::live_projcs(b);
  if (pa == nullptr || pb == nullptr) return 0;
  if (!geogcs_eqnn(pa->geogcs, pb->geogcs)) return 0;
  if (!ko::conversion_eqnn(*pa->conversion, *pb->conversion)) return 0;
  if (pa->dimension != pb->dimension) return 0;
  if (!units_match(ko_projcs_unit(pa), ko_projcs_unit(pb))) return 0;
  return units_match(ko_projcs_vert_unit(pa), ko_projcs_vert_unit(pb)) ? 1 : 0;
}

ko_geogcs *ko_projcs_geogcs(const ko_projcs *p) {
  return ko::field_or(p, ko::live_projcs, &ko_projcs::geogcs, nullptr);
}

ko_conversion *ko_projcs_conversion(const ko_projcs *p) {
  return ko::field_or(p, ko::live_projcs, &ko_projcs::conversion, nullptr);
}

ko_projection *ko_projcs_projection(const ko_projcs *p) {
  return ko_conversion_method(ko_projcs_conversion(p));
}

ko_linunit *ko_projcs_linunit(const ko_projcs *p) {
  return ko::field_or(p, ko::live_projcs, &ko_projcs::unit, nullptr);
}

ko_linunit *ko_projcs_unit(const ko_projcs *p) {
  const ko_projcs *pp = ko::live_projcs(p);
  if (pp == nullptr) return nullptr;
  if (ko_unit *first = ko_axis_unit(pp->axes[0])) return reinterpret_cast<ko_linunit *>(first);
  return pp->unit;
}

ko_linunit *ko_projcs_vert_unit(const ko_projcs *p) {
  const ko_projcs *pp = ko::live_projcs(p);
  if (pp == nullptr || pp->dimension != 3) return nullptr;
  if (ko_unit *third = ko_axis_unit(pp->axes[2])) return reinterpret_cast<ko_linunit *>(third);
  return pp->unit;
}

int ko_projcs_dimension(const ko_projcs *p) {
  return ko::field_or(p, ko::live_projcs, &ko_projcs::dimension, 0);
}

ko_axis *ko_projcs_axis(const ko_projcs *p, int index) {
  const ko_projcs *pp = ko::live_projcs(p);
  if (pp == nullptr || index < 0 || index >= pp->dimension) return nullptr;
  return pp->axes[index];
}

ko_metadata **ko_projcs_metadata_vector(const ko_projcs *p) {
  return ko::field_or(p, ko::live_projcs, &ko_projcs::metadata, nullptr);
}

ko_remark *ko_projcs_remark(const ko_projcs *p) {
  return ko::field_or(p, ko::live_projcs, &ko_projcs::remark, nullptr);
}

int ko_projcs_parm_array(const ko_projcs *p, double *out) {
  return ko_conversion_parm_array(ko_projcs_conversion(p), out);
}

// Changed parameters or projection make cached constants stale, so both
// fixes unload them.
int ko_projcs_parameters_fix(ko_projcs *p) {
  ko_projcs *pp = ko::live_projcs(p);
  if (pp == nullptr) return 0;
  ParameterFix fix = plan_parameter_fix(*pp->conversion, angular_unit_of(pp->geogcs),
                                        reinterpret_cast<const ko_unit *>(ko_projcs_unit(pp)));
  if (!fix.ok) return 0;
  apply_parameter_fix(*pp->conversion, fix);
  ko_projcs_unload_constants(pp);
  return 1;
}

int ko_projcs_special_cases(ko_projcs *p) {
  ko_projcs *pp = ko::live_projcs(p);
  if (pp == nullptr) return 0;
  bool ok = true;
  ko::Unique<ko_projection> replacement = plan_special_case(*pp->conversion, ok);
  if (!ok) return 0;
  if (replacement != nullptr) ko_projcs_unload_constants(pp);
  apply_special_case(*pp->conversion, replacement);
  return 1;
}

const ko_objvec ko_projcs_objvec =
    ko::make_objvec<ko_projcs, ko_projcs_clone, ko_projcs_del, ko_projcs_eq>(KO_TYPE_PROJCS);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(projcs, ko_projcs)
