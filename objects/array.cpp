// Array: a named run of numbers with an optional unit, such as the values
// of an adjusted system's plane transformation.
#include "objects/systems.h"
#include "objects/units.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr const char *kSource = "ko_array_new_errext";

bool units_match(const ko_unit *a, const ko_unit *b) {
  if (a == nullptr || b == nullptr) return a == b;
  return ko::unit_equal(a, b, ko::kAnyUnitType);
}

// Counts, units and each value (relative tolerance); names are left to the
// caller.
bool values_equal(const ko_array &a, const ko_array &b) {
  if (a.count != b.count || !units_match(a.unit, b.unit)) return false;
  return std::equal(a.values, a.values + a.count, b.values,
                    [](double x, double y) { return ko::rel_eq(x, y); });
}

}  // namespace

namespace ko {

bool arrays_hold_equal_values(const void *a, const void *b) {
  const ko_array *pa = live_array(a);
  const ko_array *pb = live_array(b);
  return pa != nullptr && pb != nullptr && values_equal(*pa, *pb);
}

}  // namespace ko

extern "C" {

// In order: the name (warning 354); the count (310, "%s: %d"); the values
// (326); the unit (324); each value finite (358, "%s: %f"); memory (1).
ko_array *ko_array_new_errext(const char *name, int num_values, const double *values, ko_unit *unit,
                              ko_err *err) {
  if (name == nullptr) name = "";
  ko::errext_prologue(err, kSource, name);
  if (num_values < 1 || num_values > KO_ARRAY_MAX_VALUES) {
    ko_err_fmt(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 310, kSource, "%s: %d", name, num_values);
    return nullptr;
  }
  if (values == nullptr) {
    ko::report_bad_argument(err, 326, kSource, name);
    return nullptr;
  }
  if (unit != nullptr && ko::live_unit(unit) == nullptr) {
    ko::report_bad_argument(err, 324, kSource, name);
    return nullptr;
  }
  const std::size_t count = static_cast<std::size_t>(num_values);
  const double *bad =
      std::find_if(values, values + count, [](double v) { return !std::isfinite(v); });
  if (bad != values + count) {
    ko_err_fmt(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 358, kSource, "%s: %f", name, *bad);
    return nullptr;
  }
  ko::Owned<double> copy(ko::alloc_array<double>(count, "ko_array values"));
  auto *a = copy == nullptr ? nullptr : ko::make_object<ko_array>(KO_TYPE_ARRAY, name);
  if (a == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  std::copy(values, values + count, copy.get());
  a->count = num_values;
  a->values = copy.release();
  a->unit = unit;
  return a;
}

ko_array *ko_array_new(const char *name, int num_values, const double *values, ko_unit *unit) {
  return ko_array_new_errext(name, num_values, values, unit, nullptr);
}

int ko_array_p(const void *obj) { return ko::live_array(obj) != nullptr; }

ko_array *ko_array_clone(const ko_array *a) {
  const ko_array *src = ko::live_array(a);
  if (src == nullptr) return nullptr;
  ko::Unique<ko_unit> unit(ko::unit_clone(src->unit));  // any kind, area units included
  if (src->unit != nullptr && unit == nullptr) return nullptr;
  ko_array *copy =
      ko_array_new_errext(ko_header_get_name(src), src->count, src->values, unit.get(), nullptr);
  if (copy == nullptr) return nullptr;
  unit.release();
  return ko::with_header_of(copy, src, ko_array_del);
}

ko_array *ko_array_del(ko_array *a) {
  a = ko::live_array(a);
  if (a == nullptr) return nullptr;
  ko::free_object(a->values);
  ko_object_del(a->unit);
  return ko::release_object(a);
}

// Names (ko_strcmp_ci), counts, units (both absent or equal) and values.
int ko_array_eq(const ko_array *a, const ko_array *b) {
  const ko_array *pa = ko::live_array(a);
  const ko_array *pb = ko::live_array(b);
  if (pa == nullptr || pb == nullptr) return 0;
  return ko_strcmp_ci(ko_header_get_name(pa), ko_header_get_name(pb)) == 0 && values_equal(*pa, *pb)
             ? 1
             : 0;
}

int ko_array_num_values(const ko_array *a) {
  return ko::field_or(a, ko::live_array, &ko_array::count, 0);
}

const double *ko_array_values(const ko_array *a) {
  const ko_array *pa = ko::live_array(a);
  return pa != nullptr ? pa->values : nullptr;
}

double ko_array_value(const ko_array *a, int index) {
  const ko_array *pa = ko::live_array(a);
  if (pa == nullptr || index < 0 || index >= pa->count) return 0.0;
  return pa->values[index];
}

ko_unit *ko_array_unit(const ko_array *a) {
  return ko::field_or(a, ko::live_array, &ko_array::unit, nullptr);
}

constinit const ko_objvec ko_array_objvec =
    ko::make_objvec<ko_array, ko_array_clone, ko_array_del, ko_array_eq>(KO_TYPE_ARRAY);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(array, ko_array)
