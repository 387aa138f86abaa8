// The projection object: a named record of a projection of the list, with
// the forward, inverse and constants functions copied from its vector.
#include "foundation/internal.h"
#include "objects/object.h"

struct ko_projection {
  ko_header header;  // name; internal and external code = the projection's code
  int32_t code;
  ko_proj_fn forward;
  ko_proj_fn inverse;
  ko_proj_constfunc constfunc;
};

namespace {

constexpr int32_t kGaussKruger = 43005;
constexpr int32_t kTransverseMercator = 43006;

ko_projection *live_projection(const void *obj) {
  return ko::as<ko_projection>(obj, KO_TYPE_PROJECTION);
}

// Gauss_Kruger and Transverse_Mercator are one projection under two codes.
int32_t canonical_code(int32_t code) {
  return code == kTransverseMercator ? kGaussKruger : code;
}

ko_projection *make_projection(const ko_projlist_entry *vector, uint32_t status) {
  auto *p = ko::make_object<ko_projection>(KO_TYPE_PROJECTION, vector->name);
  if (p == nullptr) return nullptr;
  p->code = vector->code;
  p->forward = vector->forward;
  p->inverse = vector->inverse;
  p->constfunc = vector->constfunc;
  ko_header_set_code_internal(p, vector->code);
  ko_header_set_code_external(p, vector->code);
  ko_header_set_status(p, status);
  return p;
}

// A function slot of the vector of the projection's code, or null.
template <auto Slot>
auto vector_slot(const ko_projection *projection) {
  const ko_projection *p = live_projection(projection);
  const ko_projlist_entry *v = p != nullptr ? ko_projlist_from_code(p->code) : nullptr;
  return v != nullptr ? v->*Slot : nullptr;
}

// A function pointer the projection object copied from its vector, or null.
template <auto Member>
auto copied_slot(const ko_projection *projection) {
  const ko_projection *p = live_projection(projection);
  return p != nullptr ? p->*Member : nullptr;
}

}  // namespace

extern "C" {

ko_projection *ko_projlist_projection_from_code(int32_t code, ko_err *err) {
  constexpr const char *kSource = "ko_projlist_projection_from_code";
  ko_err_clear(err);
  const ko_projlist_entry *vector = ko_projlist_from_code(code);
  if (vector == nullptr) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_OBJECT, 217, kSource, "s", kSource);
    return nullptr;
  }
  ko_projection *p = make_projection(vector, KO_STATUS_CODE);
  if (p == nullptr) ko::report_no_memory(err, kSource, vector->name);
  return p;
}

ko_projection *ko_projlist_projection_from_name(const char *name, ko_err *err) {
  constexpr const char *kSource = "ko_projlist_projection_from_name";
  ko_err_clear(err);
  const ko_projlist_entry *vector = ko_projlist_from_name(name);
  if (vector == nullptr) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 309, kSource, "s", kSource);
    return nullptr;
  }
  ko_projection *p = make_projection(vector, KO_STATUS_STRING);
  if (p == nullptr) ko::report_no_memory(err, kSource, vector->name);
  return p;
}

int ko_projection_p(const void *obj) { return live_projection(obj) != nullptr; }

ko_projection *ko_projection_clone(const ko_projection *projection) {
  const ko_projection *src = live_projection(projection);
  if (src == nullptr) return nullptr;
  auto *copy = ko::make_object<ko_projection>(KO_TYPE_PROJECTION, ko_header_get_name(src));
  if (copy == nullptr) return nullptr;
  copy->code = src->code;
  copy->forward = src->forward;
  copy->inverse = src->inverse;
  copy->constfunc = src->constfunc;
  if (!ko::header_copy_checked(copy, src)) return ko_projection_del(copy);
  return copy;
}

ko_projection *ko_projection_del(ko_projection *projection) {
  ko_projection *p = live_projection(projection);
  if (p == nullptr) return nullptr;
  return ko::release_object(p);
}

int ko_projection_eq(const ko_projection *a, const ko_projection *b) {
  const ko_projection *pa = live_projection(a);
  const ko_projection *pb = live_projection(b);
  if (pa == nullptr || pb == nullptr) return 0;
  return canonical_code(ko_header_get_code_internal(pa)) ==
         canonical_code(ko_header_get_code_internal(pb));
}

ko_proj_fn ko_projection_forward(const ko_projection *projection) {
  return copied_slot<&ko_projection::forward>(projection);
}
ko_proj_fn ko_projection_inverse(const ko_projection *projection) {
  return copied_slot<&ko_projection::inverse>(projection);
}
ko_proj_constfunc ko_projection_constfunc(const ko_projection *projection) {
  return copied_slot<&ko_projection::constfunc>(projection);
}

ko_proj_fn ko_projlist_get_forward(const ko_projection *projection) {
  return vector_slot<&ko_projlist_entry::forward>(projection);
}
ko_proj_fn ko_projlist_get_inverse(const ko_projection *projection) {
  return vector_slot<&ko_projlist_entry::inverse>(projection);
}
ko_proj_constfunc ko_projlist_get_constfunc(const ko_projection *projection) {
  return vector_slot<&ko_projlist_entry::constfunc>(projection);
}
ko_proj_validfunc ko_projlist_get_validfunc(const ko_projection *projection) {
  return vector_slot<&ko_projlist_entry::validfunc>(projection);
}
ko_proj_compfunc ko_projlist_get_compfunc(const ko_projection *projection) {
  return vector_slot<&ko_projlist_entry::compfunc>(projection);
}
ko_proj_parmfunc ko_projlist_get_parmfunc(const ko_projection *projection) {
  return vector_slot<&ko_projlist_entry::parmfunc>(projection);
}

int ko_projection_valid(ko_parameter *const *parms, const char *name, int32_t code,
                        ko_err *err) {
  constexpr const char *kSource = "ko_projection_valid";
  const char *text = name != nullptr ? name : "";
  if (parms == nullptr) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 330, kSource, "s", text);
    return 0;
  }
  if (code <= 0) return 1;
  const ko_projlist_entry *vector = ko_projlist_from_code(code);
  if (vector == nullptr) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 349, kSource, "s", text);
    return 0;
  }
  return vector->validfunc != nullptr ? (vector->validfunc(parms, name, err) != 0) : 1;
}

// No projection has a defaults function yet (they belong to the horizon
// list): the slots are only cleared.
int ko_projection_defaults(const ko_projection *projection, ko_parameter **parms) {
  if (parms == nullptr) return 0;
  for (int i = 0; i < KO_PARM_COUNT; ++i) parms[i] = nullptr;
  (void)projection;
  return 0;
}

const ko_objvec ko_projection_objvec =
    ko::make_objvec<ko_projection, ko_projection_clone, ko_projection_del, ko_projection_eq>(
        KO_TYPE_PROJECTION);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(projection, ko_projection)
