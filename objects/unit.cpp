// The generic unit: what a caller builds when the kind of a unit is not
// known (a UNIT keyword of a parameter, an axis).  Its constructors look the
// unit up in the linear, angular and scale tables and return a unit of that
// kind when the name and factor identify a row; otherwise the unit keeps the
// generic type code.  Area units are never chosen: an area unit is not a
// unit in this sense.
#include "objects/unit_stamp.h"

namespace {

struct KindTable {
  uint32_t type;
  const ko_unit_entry *table;
};

constexpr KindTable kKinds[] = {
    {KO_TYPE_LINUNIT, ko_linunit_tbl},
    {KO_TYPE_ANGUNIT, ko_angunit_tbl},
    {KO_TYPE_SCALEUNIT, ko_scaleunit_tbl},
};

constexpr const char *kExtSource = "ko_unit_ext_new_errext";
constexpr const char *kCodeSource = "ko_unit_new_code_errext";
constexpr const char *kNameSource = "ko_unit_new_name_errext";

// The kind whose table has a row of this name (ko_strcmp_ci, or through the
// catalogue's synonyms) and a factor equal to the library's tolerance; the
// generic type code when none has.
uint32_t identify_kind(const char *name, double factor) {
  for (const KindTable &kind : kKinds) {
    const ko_unit_entry *row = ko::unit_row_by_name(kind.type, kind.table, name);
    if (row != nullptr && ko::rel_eq(row->factor, factor)) return kind.type;
  }
  return KO_TYPE_UNIT;
}

// The first row with this code or name over the three tables, and its kind.
template <class Find, class Key>
const ko_unit_entry *find_row(Find find, Key key, uint32_t &type) {
  for (const KindTable &kind : kKinds) {
    if (const ko_unit_entry *row = find(kind, key)) {
      type = kind.type;
      return row;
    }
  }
  return nullptr;
}

const ko_unit_entry *row_by_code(const KindTable &kind, int32_t code) {
  return ko_unit_tbl_from_code(kind.table, code);
}

const ko_unit_entry *row_by_name(const KindTable &kind, const char *name) {
  return ko::unit_row_by_name(kind.type, kind.table, name);
}

}  // namespace

extern "C" {

ko_unit *ko_unit_ext_new_errext(const char *name, const char *dispname, const char *plural,
                                const char *abbr, double factor, ko_err *err) {
  return ko::unit_build_utf8(identify_kind(name, factor), name, dispname, plural, abbr, factor,
                             kExtSource, err);
}

ko_unit *ko_unit_ext_new(const char *name, const char *dispname, const char *plural,
                         const char *abbr, double factor) {
  return ko_unit_ext_new_errext(name, dispname, plural, abbr, factor, nullptr);
}

ko_unit *ko_unit_ext_new_errext_u(const char *name, const ko_uchar *dispname,
                                  const ko_uchar *plural, const ko_uchar *abbr, double factor,
                                  ko_err *err) {
  return ko::unit_build_texts(identify_kind(name, factor), name,
                              ko::UnitTexts{dispname, plural, abbr}, factor, kExtSource, err);
}

ko_unit *ko_unit_ext_new_u(const char *name, const ko_uchar *dispname, const ko_uchar *plural,
                           const ko_uchar *abbr, double factor) {
  return ko_unit_ext_new_errext_u(name, dispname, plural, abbr, factor, nullptr);
}

ko_unit *ko_unit_new_errext(const char *name, double factor, ko_err *err) {
  return ko_unit_ext_new_errext(name, nullptr, nullptr, nullptr, factor, err);
}

ko_unit *ko_unit_new(const char *name, double factor) {
  return ko_unit_new_errext(name, factor, nullptr);
}

ko_unit *ko_unit_new_code_errext(int32_t code, ko_err *err) {
  ko_err_clear(err);
  uint32_t type = 0;
  const ko_unit_entry *row = find_row(row_by_code, code, type);
  if (row == nullptr) {
    ko::report_unknown_code(err, 210, kCodeSource, code);
    return nullptr;
  }
  return ko::unit_from_row(type, *row, kCodeSource, err);
}

ko_unit *ko_unit_new_code(int32_t code) { return ko_unit_new_code_errext(code, nullptr); }

ko_unit *ko_unit_new_name_errext(const char *name, ko_err *err) {
  ko_err_clear(err);
  uint32_t type = 0;
  const ko_unit_entry *row = find_row(row_by_name, name, type);
  if (row == nullptr) {
    ko::report_unknown_name(err, kNameSource, name);
    return nullptr;
  }
  return ko::unit_from_row(type, *row, kNameSource, err);
}

ko_unit *ko_unit_new_name(const char *name) { return ko_unit_new_name_errext(name, nullptr); }

}  // extern "C"

KO_DEFINE_UNIT_COMMON(unit, ko_unit, KO_TYPE_UNIT)
