// Authority: the body that defines an object and the code it gives it
// (for example EPSG 4326), with version, citation and URI.
#include "objects/object.h"

struct ko_authority {
  ko_header header;  // no header record
  char name[KO_NAME_SIZE];
  int32_t code;
  char version[24];
  char citation[256];
  char uri[256];
};

namespace {

constexpr char kSource[] = "ko_authority_new_errext";

const ko_authority *live(const ko_authority *a) {
  return ko::as<const ko_authority>(a, KO_TYPE_AUTHORITY);
}

// Warns about every text that does not fit its field; true when all fit.
bool texts_fit(ko_err *err, const char *name, const char *version, const char *citation,
               const char *uri) {
  struct Check {
    const char *text;
    bool fits;
  } const checks[] = {
      {name, ko::fits<sizeof(ko_authority::name)>(name)},
      {version, ko::fits<sizeof(ko_authority::version)>(version)},
      {citation, ko::fits<sizeof(ko_authority::citation)>(citation)},
      {uri, ko::fits<sizeof(ko_authority::uri)>(uri)},
  };
  bool all_fit = true;
  for (const Check &c : checks) {
    if (c.fits) continue;
    ko::report_too_long(err, kSource, c.text);
    all_fit = false;
  }
  return all_fit;
}

// Copies a field into a caller buffer of the field's size; empty for no
// authority, null for no buffer.
template <std::size_t N>
char *copy_out(const ko_authority *a, const char (ko_authority::*field)[N], char *buf) {
  if (buf == nullptr) return nullptr;
  buf[0] = '\0';
  if (live(a) != nullptr) ko_strncpy(buf, a->*field, static_cast<int>(N));
  return buf;
}

}  // namespace

extern "C" {

// A text that would not fit is refused with warning 354 (not cut): an
// authority name or version that changes meaning when shortened is worse
// than none.
ko_authority *ko_authority_ext_new_errext(const char *name, int32_t code, const char *version,
                                          const char *citation, const char *uri, ko_err *err) {
  ko_err_clear(err);
  if (name == nullptr || name[0] == '\0') {
    ko::report_bad_argument(err, 320, kSource, name);
    return nullptr;
  }
  if (!texts_fit(err, name, version, citation, uri)) return nullptr;
  if (code < 1) {
    ko_err_fmt(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 311, kSource, "%s: %d", name, code);
    return nullptr;
  }
  auto *a = ko::make_object<ko_authority>(KO_TYPE_AUTHORITY, nullptr);
  if (a == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  ko::copy_field(a->name, name);
  a->code = code;
  ko::copy_field(a->version, version);
  ko::copy_field(a->citation, citation);
  ko::copy_field(a->uri, uri);
  return a;
}

ko_authority *ko_authority_ext_new(const char *name, int32_t code, const char *version,
                                   const char *citation, const char *uri) {
  return ko_authority_ext_new_errext(name, code, version, citation, uri, nullptr);
}

ko_authority *ko_authority_new_errext(const char *name, int32_t code, const char *version,
                                      ko_err *err) {
  return ko_authority_ext_new_errext(name, code, version, nullptr, nullptr, err);
}

ko_authority *ko_authority_new(const char *name, int32_t code, const char *version) {
  return ko_authority_ext_new_errext(name, code, version, nullptr, nullptr, nullptr);
}

int ko_authority_p(const void *obj) {
  return ko::as<const ko_authority>(obj, KO_TYPE_AUTHORITY) != nullptr;
}

ko_authority *ko_authority_clone(const ko_authority *a) {
  if (live(a) == nullptr) return nullptr;
  ko_authority *copy = ko_authority_ext_new(a->name, a->code, a->version, a->citation, a->uri);
  if (copy != nullptr) ko_header_copy_int(copy, a);
  return copy;
}

ko_authority *ko_authority_del(ko_authority *a) {
  return ko::release_object(ko::as<ko_authority>(a, KO_TYPE_AUTHORITY));
}

// Same body and same code; version, citation and URI do not matter.
int ko_authority_eq(const ko_authority *a, const ko_authority *b) {
  if (live(a) == nullptr || live(b) == nullptr) return 0;
  return a->code == b->code && ko_strcmp_ci(a->name, b->name) == 0;
}

char *ko_authority_authname(const ko_authority *a, char *buf) {
  return copy_out(a, &ko_authority::name, buf);
}

int32_t ko_authority_authcode(const ko_authority *a) { return live(a) != nullptr ? a->code : 0; }

char *ko_authority_version(const ko_authority *a, char *buf) {
  return copy_out(a, &ko_authority::version, buf);
}

char *ko_authority_citation(const ko_authority *a, char *buf) {
  return copy_out(a, &ko_authority::citation, buf);
}

char *ko_authority_uri(const ko_authority *a, char *buf) {
  return copy_out(a, &ko_authority::uri, buf);
}

constinit const ko_objvec ko_authority_objvec =
    ko::make_objvec<ko_authority, ko_authority_clone, ko_authority_del, ko_authority_eq>(
        KO_TYPE_AUTHORITY);

}  // extern "C"

KO_DEFINE_TYPE_FORWARD(authority, ko_authority)
