// Prime meridian: a longitude east of Greenwich, given in an angular unit
// and stored in degrees whatever the unit.
#include "objects/geodetic.h"

#include <cmath>

namespace {

// Every constructor form reports under this one name.
constexpr const char *kSource = "ko_primem_new_errext";

// Radians per unit; a meridian without a unit counts in degrees.
double radians_per_unit(const ko_angunit *unit) {
  return ko::unit_factor_or(unit, KO_TYPE_ANGUNIT, ko::kDegreeFactor);
}

}  // namespace

extern "C" {

ko_primem *ko_primem_ext_new_errext(const char *name, ko_angunit *unit, double longitude,
                                    ko_err *err) {
  if (name == nullptr) name = "";
  ko::errext_prologue(err, kSource, name);
  if (unit != nullptr && ko::live_unit(unit, KO_TYPE_ANGUNIT) == nullptr) {
    ko::report_bad_argument(err, 322, kSource, name);
    return nullptr;
  }
  ko::Unique<ko_angunit> made_unit;
  if (unit == nullptr) {
    made_unit.reset(ko::new_degree());
    if (made_unit == nullptr) {
      ko::report_no_memory(err, kSource, name);
      return nullptr;
    }
  }
  ko_angunit *chosen = unit != nullptr ? unit : made_unit.get();
  double degrees = radians_per_unit(chosen) / ko::kDegreeFactor * longitude;
  // Out of range first (so an infinite longitude is 301), then NaN (358).
  if (degrees > 180.0 || degrees < -180.0 || !std::isfinite(degrees)) {
    int number = std::isnan(degrees) ? 358 : 301;
    ko_err_fmt(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, number, kSource, "%s: %f", name, degrees);
    return nullptr;
  }
  auto *p = ko::make_object<ko_primem>(KO_TYPE_PRIMEM, name);
  if (p == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  p->longitude = degrees;
  p->unit = chosen;
  made_unit.release();
  return p;
}

ko_primem *ko_primem_ext_new(const char *name, ko_angunit *unit, double longitude) {
  return ko_primem_ext_new_errext(name, unit, longitude, nullptr);
}

ko_primem *ko_primem_new_errext(const char *name, double longitude, ko_err *err) {
  return ko_primem_ext_new_errext(name, nullptr, longitude, err);
}

ko_primem *ko_primem_new(const char *name, double longitude) {
  return ko_primem_ext_new_errext(name, nullptr, longitude, nullptr);
}

int ko_primem_p(const void *obj) { return ko::live_primem(obj) != nullptr; }

// Rebuilt through the constructor from the stored degrees and a clone of the
// unit, so the constructor's unit conversion applies to the degrees again:
// a clone of a meridian whose unit is not the degree holds a different
// longitude.  Kept so for compatibility with existing data.
ko_primem *ko_primem_clone(const ko_primem *p) {
  const ko_primem *src = ko::live_primem(p);
  ko::Unique<ko_angunit> unit;
  if (src == nullptr || !ko::clone_part(src->unit, unit, ko_angunit_clone)) return nullptr;
  ko_primem *copy =
      ko_primem_ext_new_errext(ko_header_get_name(src), unit.get(), src->longitude, nullptr);
  if (copy != nullptr) unit.release();
  return ko::with_header_of(copy, src, ko_primem_del);
}

ko_primem *ko_primem_del(ko_primem *p) {
  p = ko::live_primem(p);
  if (p == nullptr) return nullptr;
  ko_angunit_del(p->unit);
  return ko::release_object(p);
}

// Equal names (ko_strcmp_ci) and equal values to the relative tolerance,
// where each side's value is radians-per-degree x stored degrees x its
// unit's factor: the stored degrees are scaled by the unit once more.  This
// double scaling is deliberate and kept for compatibility; two meridians in
// the same unit compare exactly as their longitudes do.
int ko_primem_eq(const ko_primem *a, const ko_primem *b) {
  const ko_primem *pa = ko::live_primem(a);
  const ko_primem *pb = ko::live_primem(b);
  if (pa == nullptr || pb == nullptr) return 0;
  if (ko_strcmp_ci(ko_header_get_name(pa), ko_header_get_name(pb)) != 0) return 0;
  double va = ko::kDegreeFactor * pa->longitude * radians_per_unit(pa->unit);
  double vb = ko::kDegreeFactor * pb->longitude * radians_per_unit(pb->unit);
  return ko::rel_eq(va, vb) ? 1 : 0;
}

double ko_primem_longitude(const ko_primem *p) {
  return ko::field_or(p, ko::live_primem, &ko_primem::longitude, 0.0);
}

ko_angunit *ko_primem_unit(const ko_primem *p) {
  return ko::field_or(p, ko::live_primem, &ko_primem::unit, nullptr);
}

// Takes the new unit (an angular unit or null) and deletes the old one.
void ko_primem_unit_set(ko_primem *p, ko_angunit *unit) {
  ko_primem *pm = ko::live_primem(p);
  if (pm == nullptr || pm->unit == unit) return;
  if (unit != nullptr && ko::live_unit(unit, KO_TYPE_ANGUNIT) == nullptr) return;
  ko_angunit_del(pm->unit);
  pm->unit = unit;
}

const ko_objvec ko_primem_objvec =
    ko::make_objvec<ko_primem, ko_primem_clone, ko_primem_del, ko_primem_eq>(KO_TYPE_PRIMEM);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(primem, ko_primem)
