// Display name: the name of an object as shown to users, in UTF-16.
#include "objects/object.h"

struct ko_dispname {
  ko_header header;  // no header record
  ko_uchar text[KO_NAME_SIZE];
};

namespace {

constexpr char kSource[] = "ko_dispname_new_errext";

const ko_dispname *live(const ko_dispname *d) {
  return ko::as<const ko_dispname>(d, KO_TYPE_DISPNAME);
}

}  // namespace

extern "C" {

// The text is kept to 79 units.
ko_dispname *ko_dispname_new_errext_u(const ko_uchar *text, ko_err *err) {
  ko_err_clear(err);
  if (text == nullptr || text[0] == 0) {
    ko::report_bad_argument(err, 346, kSource, nullptr);
    return nullptr;
  }
  auto *d = ko::make_object<ko_dispname>(KO_TYPE_DISPNAME, nullptr);
  if (d == nullptr) {
    char name[KO_ERR_TEXT_SIZE];
    ko_str_uni_to_utf8(name, text, static_cast<int>(sizeof name));
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  ko::copy_units(d->text, text);
  return d;
}

ko_dispname *ko_dispname_new_u(const ko_uchar *text) {
  return ko_dispname_new_errext_u(text, nullptr);
}

ko_dispname *ko_dispname_new_errext(const char *utf8, ko_err *err) {
  ko_uchar text[KO_NAME_SIZE];
  ko_str_utf8_to_uni(text, utf8 != nullptr ? utf8 : "", KO_NAME_SIZE);
  return ko_dispname_new_errext_u(text, err);
}

ko_dispname *ko_dispname_new(const char *utf8) { return ko_dispname_new_errext(utf8, nullptr); }

int ko_dispname_p(const void *obj) {
  return ko::as<const ko_dispname>(obj, KO_TYPE_DISPNAME) != nullptr;
}

ko_dispname *ko_dispname_clone(const ko_dispname *d) {
  if (live(d) == nullptr) return nullptr;
  ko_dispname *copy = ko_dispname_new_u(d->text);
  if (copy != nullptr) ko_header_copy_int(copy, d);
  return copy;
}

ko_dispname *ko_dispname_del(ko_dispname *d) {
  return ko::release_object(ko::as<ko_dispname>(d, KO_TYPE_DISPNAME));
}

// Display names are shown to people, so they compare exactly, case included.
int ko_dispname_eq(const ko_dispname *a, const ko_dispname *b) {
  if (live(a) == nullptr || live(b) == nullptr) return 0;
  return ko_strcmp_u(a->text, b->text) == 0;
}

ko_uchar *ko_dispname_uname(const ko_dispname *d, ko_uchar *buf) {
  if (buf == nullptr) return nullptr;
  buf[0] = 0;
  if (live(d) != nullptr) ko_strncpy_u(buf, d->text, KO_NAME_SIZE);
  return buf;
}

const ko_uchar *ko_dispname_uname_get(const ko_dispname *d) {
  return (live(d) != nullptr && d->text[0] != 0) ? d->text : nullptr;
}

constinit const ko_objvec ko_dispname_objvec =
    ko::make_objvec<ko_dispname, ko_dispname_clone, ko_dispname_del, ko_dispname_eq>(
        KO_TYPE_DISPNAME);

}  // extern "C"

KO_DEFINE_TYPE_FORWARD(dispname, ko_dispname)
