// The method object: a named header whose codes are the method's code.
// Every slot getter looks the method vector up again by that code, so a
// method object never holds a pointer into the list.
#include "transformations/geogtran.h"

namespace ko {

const ko_methlist_entry *method_entry(const void *method) {
  const ko_method *m = live_method(method);
  return m != nullptr ? ko_methlist_from_code(ko_header_get_code_internal(m)) : nullptr;
}

int method_valid(ko_parameter *const *parms, const char *name, int32_t code, ko_err *err) {
  if (parms == nullptr) {
    report_bad_argument(err, 330, "ko_method_valid", name);
    return 0;
  }
  if (code <= 0) return 1;
  const ko_methlist_entry *entry = ko_methlist_from_code(code);
  if (entry == nullptr) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 350, "ko_method_valid", "d", code);
    return 0;
  }
  return entry->validfunc(parms, name != nullptr ? name : "", err) != 0 ? 1 : 0;
}

}  // namespace ko

namespace {

ko_method *method_clone(const ko_method *m);
ko_method *method_del(ko_method *m);
int method_eq(const ko_method *a, const ko_method *b);

}  // namespace

extern "C" {

ko_method *ko_method_new_methlist(const ko_methlist_entry *entry, ko_err *err) {
  constexpr const char *kSource = "ko_method_new_methlist";
  ko_err_clear(err);
  if (entry == nullptr) {
    ko::report_bad_argument(err, 335, kSource, "");
    return nullptr;
  }
  auto *m = ko::make_object<ko_method>(KO_TYPE_METHOD, entry->name);
  if (m == nullptr) {
    ko::report_no_memory(err, kSource, entry->name);
    return nullptr;
  }
  ko_header_set_code_internal(m, entry->code);
  ko_header_set_code_external(m, entry->code);
  return m;
}

// An unknown name is only a warning, but there is no method to make.
ko_method *ko_method_new_errext(const char *name, ko_err *err) {
  constexpr const char *kSource = "ko_method_new_errext";
  ko_err_clear(err);
  const ko_methlist_entry *entry = ko_methlist_from_name(name);
  if (entry == nullptr) {
    ko_err_arg(err, KO_SEV_WARNING, KO_ERRCAT_ARGUMENT, 305, kSource, "s",
               name != nullptr ? name : "");
    return nullptr;
  }
  ko_method *m = ko_method_new_methlist(entry, err);
  if (m == nullptr) {
    ko_err_clear(err);
    ko::report_no_memory(err, kSource, name);
  }
  return m;
}

ko_method *ko_method_new(const char *name) { return ko_method_new_errext(name, nullptr); }

int ko_method_p(const void *obj) { return ko::live_method(obj) != nullptr; }

ko_method *ko_method_clone(const ko_method *m) { return method_clone(m); }
ko_method *ko_method_del(ko_method *m) { return method_del(m); }
int ko_method_eq(const ko_method *a, const ko_method *b) { return method_eq(a, b); }

ko_mth_fn ko_method_forward(const ko_method *m) {
  return ko_methlist_get_forward(ko::method_entry(m));
}
ko_mth_fn ko_method_inverse(const ko_method *m) {
  return ko_methlist_get_inverse(ko::method_entry(m));
}
ko_mth_constfunc ko_method_constfunc(const ko_method *m) {
  return ko_methlist_get_constfunc(ko::method_entry(m));
}
ko_mth_unloadfunc ko_method_unloadfunc(const ko_method *m) {
  return ko_methlist_get_unloadfunc(ko::method_entry(m));
}
ko_mth_interpfunc ko_method_interpfunc(const ko_method *m) {
  return ko_methlist_get_interpfunc(ko::method_entry(m));
}
int ko_method_rtn_type(const ko_method *m) {
  return ko_methlist_get_rtn_type(ko::method_entry(m));
}
int ko_method_height_aware(const ko_method *m) {
  return ko_methlist_get_height_aware(ko::method_entry(m));
}
int ko_method_needs_file(const ko_method *m) {
  return ko_methlist_get_needs_file(ko::method_entry(m));
}

int ko_method_defaults(const ko_method *m, ko_parameter **parms) {
  const ko_methlist_entry *entry = ko::method_entry(m);
  if (entry == nullptr || parms == nullptr) return 0;
  for (int i = 0; i < KO_PARM_COUNT; ++i) parms[i] = nullptr;
  return entry->dfltsfunc != nullptr ? entry->dfltsfunc(parms) : 0;
}

int ko_method_filenames(const ko_method *m, const char *dataset_name, char *buf, int size) {
  ko_mth_filefunc files = ko_methlist_get_filefunc(ko::method_entry(m));
  return files != nullptr ? files(dataset_name, buf, size) : 0;
}

int ko_method_valid(ko_parameter *const *parms, const char *name, int32_t code, ko_err *err) {
  ko_err_clear(err);
  return ko::method_valid(parms, name, code, err);
}

constinit const ko_objvec ko_method_objvec =
    ko::make_objvec<ko_method, method_clone, method_del, method_eq>(KO_TYPE_METHOD);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(method, ko_method)

namespace {

// A method of the same code, with the source's header (status, codes,
// names, authority) copied across.
ko_method *method_clone(const ko_method *m) {
  const ko_method *src = ko::live_method(m);
  if (src == nullptr) return nullptr;
  auto *copy = ko::make_object<ko_method>(KO_TYPE_METHOD, ko_header_get_name(src));
  if (copy == nullptr) return nullptr;
  if (!ko::header_copy_checked(copy, src)) return method_del(copy);
  return copy;
}

ko_method *method_del(ko_method *m) { return ko::release_object(ko::live_method(m)); }

int method_eq(const ko_method *a, const ko_method *b) {
  const ko_method *ma = ko::live_method(a);
  const ko_method *mb = ko::live_method(b);
  if (ma == nullptr || mb == nullptr) return 0;
  return ko_header_get_code_internal(ma) == ko_header_get_code_internal(mb) ? 1 : 0;
}

}  // namespace
