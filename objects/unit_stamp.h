// The shared implementation behind the unit types' public functions, and
// the macros that stamp those functions out for each type.  Used by
// units.cpp (the four kinds) and unit.cpp (the generic unit).  Internal.
#pragma once

#include "objects/units.h"

namespace ko {

// Display texts of a unit under construction, UTF-16, each may be null.
struct UnitTexts {
  const ko_uchar *display_name = nullptr;
  const ko_uchar *plural = nullptr;
  const ko_uchar *abbreviation = nullptr;
};

enum class UnitField { kDisplayName, kPlural, kAbbreviation };

// What tells one unit kind from another: its type code, its table, the
// error number of an unknown table code, and the public names that report.
struct UnitKind {
  uint32_t type;
  const ko_unit_entry *table;
  int code_error;
  const char *ext_source;
  const char *code_source;
  const char *name_source;
};

#define KO_UNIT_KIND(prefix, type, table, code_error)                                   \
  ko::UnitKind {                                                                        \
    type, table, code_error, "ko_" #prefix "_ext_new_errext", "ko_" #prefix "_new_code_errext", \
        "ko_" #prefix "_new_name_errext"                                                \
  }

ko_unit *unit_build_texts(uint32_t type, const char *name, const UnitTexts &texts, double factor,
                          const char *source, ko_err *err);
ko_unit *unit_build_utf8(uint32_t type, const char *name, const char *display_name,
                         const char *plural, const char *abbreviation, double factor,
                         const char *source, ko_err *err);
ko_unit *unit_from_row(uint32_t type, const ko_unit_entry &row, const char *source, ko_err *err);
void report_unknown_code(ko_err *err, int number, const char *source, int32_t code);
void report_unknown_name(ko_err *err, const char *source, const char *name);
ko_unit *unit_delete(void *handle, uint32_t mask);
ko_uchar *unit_text(const void *handle, uint32_t mask, UnitField field, ko_uchar *buf);
// The row of a unit table named `name` directly or through the catalogue's
// synonyms of that unit type ("metre" for "Meter"); null when neither is.
const ko_unit_entry *unit_row_by_name(uint32_t type, const ko_unit_entry *table, const char *name);
ko_unit *kind_new_code(const UnitKind &kind, int32_t code, ko_err *err);
ko_unit *kind_new_name(const UnitKind &kind, const char *name, ko_err *err);

// A clone that keeps the type code, for a unit whose type shares a bit with mask.
inline ko_unit *unit_clone_checked(const void *handle, uint32_t mask) {
  return live_unit(handle, mask) != nullptr ? unit_clone(handle) : nullptr;
}

}  // namespace ko

// The functions every unit type has beyond its constructors: type test,
// clone, delete, equality, factor, texts, reference code, generic forwards
// and objvec.  File scope, no trailing semicolon.
#define KO_DEFINE_UNIT_COMMON(prefix, T, mask)                                               \
  extern "C" {                                                                               \
  int ko_##prefix##_p(const void *obj) { return ko::live_unit(obj, mask) != nullptr; }       \
  T *ko_##prefix##_clone(const T *unit) {                                                    \
    return reinterpret_cast<T *>(ko::unit_clone_checked(unit, mask));                        \
  }                                                                                          \
  T *ko_##prefix##_del(T *unit) {                                                            \
    ko::unit_delete(unit, mask);                                                             \
    return nullptr;                                                                          \
  }                                                                                          \
  int ko_##prefix##_eq(const T *a, const T *b) { return ko::unit_equal(a, b, mask) ? 1 : 0; } \
  double ko_##prefix##_factor(const T *unit) { return ko::unit_factor_or(unit, mask, 0.0); } \
  ko_uchar *ko_##prefix##_display_name(const T *unit, ko_uchar *buf) {                       \
    return ko::unit_text(unit, mask, ko::UnitField::kDisplayName, buf);                      \
  }                                                                                          \
  ko_uchar *ko_##prefix##_plural(const T *unit, ko_uchar *buf) {                             \
    return ko::unit_text(unit, mask, ko::UnitField::kPlural, buf);                           \
  }                                                                                          \
  ko_uchar *ko_##prefix##_abbreviation(const T *unit, ko_uchar *buf) {                       \
    return ko::unit_text(unit, mask, ko::UnitField::kAbbreviation, buf);                     \
  }                                                                                          \
  uint32_t ko_##prefix##_refcode(const T *unit) {                                            \
    const ko_unit *u = ko::live_unit(unit, mask);                                            \
    return u != nullptr ? u->refcode : 0u;                                                   \
  }                                                                                          \
  void ko_##prefix##_set_refcode(T *unit, uint32_t refcode) {                                \
    if (ko_unit *u = ko::live_unit(unit, mask)) u->refcode = refcode;                        \
  }                                                                                          \
  const ko_objvec ko_##prefix##_objvec =                                                     \
      ko::make_objvec<T, ko_##prefix##_clone, ko_##prefix##_del, ko_##prefix##_eq>(mask);   \
  }                                                                                          \
  KO_DEFINE_OBJECT_FORWARDS(prefix, T)

// One unit kind in full: constructors from name and factor, from the
// kind's table by code and by name, and the common functions.
#define KO_DEFINE_UNIT_KIND(prefix, T, kind)                                                  \
  extern "C" {                                                                                \
  T *ko_##prefix##_ext_new_errext(const char *name, const char *dispname, const char *plural, \
                                  const char *abbr, double factor, ko_err *err) {             \
    return reinterpret_cast<T *>(ko::unit_build_utf8(kind.type, name, dispname, plural, abbr, \
                                                     factor, kind.ext_source, err));          \
  }                                                                                           \
  T *ko_##prefix##_ext_new(const char *name, const char *dispname, const char *plural,        \
                           const char *abbr, double factor) {                                 \
    return ko_##prefix##_ext_new_errext(name, dispname, plural, abbr, factor, nullptr);       \
  }                                                                                           \
  T *ko_##prefix##_ext_new_errext_u(const char *name, const ko_uchar *dispname,               \
                                    const ko_uchar *plural, const ko_uchar *abbr,             \
                                    double factor, ko_err *err) {                             \
    return reinterpret_cast<T *>(ko::unit_build_texts(                                        \
        kind.type, name, ko::UnitTexts{dispname, plural, abbr}, factor, kind.ext_source, err)); \
  }                                                                                           \
  T *ko_##prefix##_ext_new_u(const char *name, const ko_uchar *dispname,                      \
                             const ko_uchar *plural, const ko_uchar *abbr, double factor) {   \
    return ko_##prefix##_ext_new_errext_u(name, dispname, plural, abbr, factor, nullptr);     \
  }                                                                                           \
  T *ko_##prefix##_new_errext(const char *name, double factor, ko_err *err) {                 \
    return ko_##prefix##_ext_new_errext(name, nullptr, nullptr, nullptr, factor, err);        \
  }                                                                                           \
  T *ko_##prefix##_new(const char *name, double factor) {                                     \
    return ko_##prefix##_new_errext(name, factor, nullptr);                                   \
  }                                                                                           \
  T *ko_##prefix##_new_code_errext(int32_t code, ko_err *err) {                               \
    return reinterpret_cast<T *>(ko::kind_new_code(kind, code, err));                         \
  }                                                                                           \
  T *ko_##prefix##_new_code(int32_t code) { return ko_##prefix##_new_code_errext(code, nullptr); } \
  T *ko_##prefix##_new_name_errext(const char *name, ko_err *err) {                           \
    return reinterpret_cast<T *>(ko::kind_new_name(kind, name, err));                         \
  }                                                                                           \
  T *ko_##prefix##_new_name(const char *name) { return ko_##prefix##_new_name_errext(name, nullptr); } \
  }                                                                                           \
  KO_DEFINE_UNIT_COMMON(prefix, T, kind.type)
