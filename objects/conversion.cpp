// Conversion: the projection of a projected system with its parameters, and
// the 24-slot parameter array that the projection functions receive.
#include "objects/composite.h"
#include "objects/parameter.h"
#include "objects/projcs.h"

#include <array>
#include <span>

namespace {

constexpr const char *kSource = "ko_conversion_ext_new_errext";

// Slots that the array-filling rules name (parameter list index column).
constexpr int kSlotStandardParallel1 = 3;  // and Latitude_Of_1st_Point, Pseudo_Standard_Parallel_1
constexpr int kSlotStandardParallel2 = 4;  // and Latitude_Of_2nd_Point
constexpr int kSlotScaleFactor = 5;

using ParmSlots = std::span<ko_parameter *const, KO_PARM_COUNT>;

// Allocates the record and takes the projection and the parameters.
ko_conversion *build(const char *name, ko_projection *projection, ParmSlots parms) {
  auto *c = ko::make_object<ko_conversion>(KO_TYPE_CONVERSION, name);
  if (c == nullptr) return nullptr;
  c->projection = projection;
  std::copy(parms.begin(), parms.end(), c->parms);
  return c;
}

// Both absent, or both present and equal.
bool same_parameter(const ko_parameter *a, const ko_parameter *b) {
  if (a == nullptr || b == nullptr) return a == b;
  return ko_parameter_eq(a, b) != 0;
}

}  // namespace

namespace ko {

bool conversion_eqnn(const ko_conversion &a, const ko_conversion &b) {
  if (ko_projection_eq(a.projection, b.projection) == 0) return false;
  for (int i = 0; i < KO_PARM_COUNT; ++i)
    if (!same_parameter(a.parms[i], b.parms[i])) return false;
  return true;
}

}  // namespace ko

extern "C" {

ko_conversion *ko_conversion_ext_new_errext(const char *name, ko_projection *projection,
                                            ko_parameter **parms, ko_err *err) {
  if (name == nullptr) name = "";
  ko::errext_prologue(err, kSource, name);
  if (ko_projection_p(projection) == 0) {
    ko::report_bad_argument(err, 328, kSource, name);
    return nullptr;
  }
  if (parms == nullptr) {
    ko::report_bad_argument(err, 330, kSource, name);
    return nullptr;
  }
  if (ko_projection_valid(parms, name, ko_object_code_internal(projection), err) == 0)
    return nullptr;
  ko_conversion *c = build(name, projection, ParmSlots(parms, KO_PARM_COUNT));
  if (c == nullptr) ko::report_no_memory(err, kSource, name);
  return c;
}

ko_conversion *ko_conversion_ext_new(const char *name, ko_projection *projection,
                                     ko_parameter **parms) {
  return ko_conversion_ext_new_errext(name, projection, parms, nullptr);
}

ko_conversion *ko_conversion_new_errext(ko_projection *projection, ko_parameter **parms,
                                        ko_err *err) {
  return ko_conversion_ext_new_errext(ko_header_get_name(projection), projection, parms, err);
}

ko_conversion *ko_conversion_new(ko_projection *projection, ko_parameter **parms) {
  return ko_conversion_new_errext(projection, parms, nullptr);
}

int ko_conversion_p(const void *obj) { return ko::live_conversion(obj) != nullptr; }

// A deep copy.  It is built without the validity check: the source's
// parameters are whatever its projection (possibly replaced since) holds.
ko_conversion *ko_conversion_clone(const ko_conversion *c) {
  const ko_conversion *src = ko::live_conversion(c);
  if (src == nullptr) return nullptr;
  ko::Unique<ko_projection> projection;
  if (!ko::clone_part(src->projection, projection, ko_projection_clone)) return nullptr;
  std::array<ko::Unique<ko_parameter>, KO_PARM_COUNT> parms;
  std::array<ko_parameter *, KO_PARM_COUNT> parm_ptrs{};
  for (int i = 0; i < KO_PARM_COUNT; ++i) {
    if (!ko::clone_part(src->parms[i], parms[i], ko_parameter_clone)) return nullptr;
    parm_ptrs[i] = parms[i].get();
  }
  ko_conversion *copy = build(ko_header_get_name(src), projection.get(), parm_ptrs);
  if (copy == nullptr) return nullptr;
  projection.release();
  for (auto &p : parms) p.release();
  return ko::with_header_of(copy, src, ko_conversion_del);
}

ko_conversion *ko_conversion_del(ko_conversion *c) {
  c = ko::live_conversion(c);
  if (c == nullptr) return nullptr;
  ko_projection_del(c->projection);
  for (ko_parameter *p : c->parms) ko_parameter_del(p);
  return ko::release_object(c);
}

int ko_conversion_eq(const ko_conversion *a, const ko_conversion *b) {
  const ko_conversion *ca = ko::live_conversion(a);
  const ko_conversion *cb = ko::live_conversion(b);
  if (ca == nullptr || cb == nullptr) return 0;
  if (ko_strcmp_ci(ko_header_get_name(ca), ko_header_get_name(cb)) != 0) return 0;
  return ko::conversion_eqnn(*ca, *cb) ? 1 : 0;
}

int ko_conversion_parm_array(const ko_conversion *c, double *out) {
  const ko_conversion *conv = ko::live_conversion(c);
  if (conv == nullptr || out == nullptr) return 0;
  const auto &parms = conv->parms;
  for (int i = 0; i < KO_PARM_COUNT; ++i)
    out[i] = parms[i] != nullptr ? ko_parameter_value_si(parms[i]) : 0.0;
  if (ko_proj_parmfunc parmfunc = ko_projlist_get_parmfunc(conv->projection))
    parmfunc(parms, out);
  if (parms[kSlotScaleFactor] == nullptr) out[kSlotScaleFactor] = 1.0;
  if (parms[kSlotStandardParallel2] == nullptr)
    out[kSlotStandardParallel2] = out[kSlotStandardParallel1];
  else if (parms[kSlotStandardParallel1] == nullptr)
    out[kSlotStandardParallel1] = out[kSlotStandardParallel2];
  return 1;
}

ko_projection *ko_conversion_method(const ko_conversion *c) {
  return ko::field_or(c, ko::live_conversion, &ko_conversion::projection, nullptr);
}

void ko_conversion_method_set(ko_conversion *c, ko_projection *projection) {
  ko_conversion *conv = ko::live_conversion(c);
  if (conv == nullptr || ko_projection_p(projection) == 0 || conv->projection == projection)
    return;
  ko_projection_del(conv->projection);
  conv->projection = projection;
}

ko_parameter **ko_conversion_parameters_ptr(const ko_conversion *c) {
  ko_conversion *conv = ko::live_conversion(c);
  return conv != nullptr ? conv->parms : nullptr;
}

const ko_objvec ko_conversion_objvec =
    ko::make_objvec<ko_conversion, ko_conversion_clone, ko_conversion_del, ko_conversion_eq>(
        KO_TYPE_CONVERSION);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(conversion, ko_conversion)
