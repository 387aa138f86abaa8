// The horizontal adjustment methods of adjusted systems: the constant
// list of the catalogue's two plane transformations, its lookups and the
// method object.
#include "objects/listed_method.h"
#include "objects/systems.h"

#include <iterator>

extern "C" {

// EPSG's plane-to-plane methods (IOGP guidance note 7-2): the similarity
// (translation, scale and rotation: 4 values) and the general affine
// transformation (6 values).  ko_adjhcs documents the values.
const ko_htmethlist_entry ko_htmethlist_tbl[] = {
    {9621, 0, "Similarity", 4},
    {9624, 0, "Affine", 6},
    {0, 0, nullptr, 0},
};

const int ko_htmethlist_tbl_cnt = static_cast<int>(std::size(ko_htmethlist_tbl)) - 1;

}  // extern "C"

namespace {

const ko::MethodList<ko_htmethlist_entry> kList{
    {ko_htmethlist_tbl, std::size(ko_htmethlist_tbl) - 1},
    KO_TYPE_HTMETHOD,
    "ko_htmethlist_htmethod_from_code",
    "ko_htmethlist_htmethod_from_name",
    216,
    306,
};

ko_htmethod *htmethod_del(ko_htmethod *m) { return ko::release_object(ko::live_htmethod(m)); }
int htmethod_eq(const ko_htmethod *a, const ko_htmethod *b) {
  return ko::method_eq(a, b, KO_TYPE_HTMETHOD);
}
ko_htmethod *htmethod_clone(const ko_htmethod *m) {
  return ko::method_clone(m, KO_TYPE_HTMETHOD, htmethod_del);
}

}  // namespace

extern "C" {

const ko_htmethlist_entry *ko_htmethlist_from_code(int32_t code) {
  return ko::entry_from_code(kList, code);
}

const ko_htmethlist_entry *ko_htmethlist_from_name(const char *name) {
  return ko::entry_from_name(kList, name);
}

const ko_htmethlist_entry *ko_htmethlist_from_indx(int index) {
  return ko::entry_from_index(kList, index);
}

int ko_htmethlist_count(void) { return ko_htmethlist_tbl_cnt; }

ko_htmethod *ko_htmethlist_htmethod_from_code(int32_t code, ko_err *err) {
  return ko::method_from_code<ko_htmethod>(kList, code, 336, err);
}

ko_htmethod *ko_htmethlist_htmethod_from_name(const char *name, ko_err *err) {
  return ko::method_from_name<ko_htmethod>(kList, name, 336, err);
}

ko_htmethod *ko_htmethod_new_htmethlist(const ko_htmethlist_entry *entry, ko_err *err) {
  return ko::method_new<ko_htmethod>(kList, entry, 336, "ko_htmethod_new_htmethlist", err);
}

ko_htmethod *ko_htmethod_new_errext(const char *name, ko_err *err) {
  return ko::method_by_name<ko_htmethod>(kList, name, 336, "ko_htmethod_new_errext", err);
}

ko_htmethod *ko_htmethod_new(const char *name) { return ko_htmethod_new_errext(name, nullptr); }

int ko_htmethod_p(const void *obj) { return ko::live_htmethod(obj) != nullptr; }
ko_htmethod *ko_htmethod_clone(const ko_htmethod *m) { return htmethod_clone(m); }
ko_htmethod *ko_htmethod_del(ko_htmethod *m) { return htmethod_del(m); }
int ko_htmethod_eq(const ko_htmethod *a, const ko_htmethod *b) { return htmethod_eq(a, b); }

const ko_htmethlist_entry *ko_htmethod_entry(const ko_htmethod *m) {
  return ko::method_entry(kList, m);
}

constinit const ko_objvec ko_htmethod_objvec =
    ko::make_objvec<ko_htmethod, htmethod_clone, htmethod_del, htmethod_eq>(KO_TYPE_HTMETHOD);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(htmethod, ko_htmethod)
