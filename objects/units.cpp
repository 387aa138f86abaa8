// Linear, angular, scale and area units: one implementation over the shared
// unit record, stamped out once per type.  The generic unit, whose
// constructors choose the kind, lives in unit.cpp.
#include "objects/units.h"

#include "objects/unit_stamp.h"

#include <cmath>

namespace ko {

namespace {

// A UTF-16 text cut to a field of N units, with the report when it did not fit.
template <std::size_t N>
void copy_unit_text(ko_uchar (&dst)[N], const ko_uchar *src, const char *source, ko_err *err) {
  if (src == nullptr) {
    dst[0] = 0;
    return;
  }
  ko_strncpy_u(dst, src, static_cast<int>(N));
  if (ko_strlen_u(src) >= static_cast<int>(N)) {
    char shown[KO_ERR_TEXT_SIZE];
    ko_str_uni_to_utf8(shown, src, static_cast<int>(sizeof shown));
    report_too_long(err, source, shown);
  }
}

// Authority of a table code: EPSG's codes are below 100000, the library's
// own unit codes are the 109xxx block.
const char *table_authority(int32_t code) { return code < 100000 ? "EPSG" : "Velor"; }

}  // namespace

// The checks of every unit constructor, in order: the name (warning 354),
// the three display texts (354 each), the factor (304 for <= 0, then 358 for
// NaN or infinity, both with the message "name: factor"), the allocation.
ko_unit *unit_build_texts(uint32_t type, const char *name, const UnitTexts &texts, double factor,
                          const char *source, ko_err *err) {
  if (name == nullptr) name = "";
  errext_prologue(err, source, name);
  ko_unit staged{};
  copy_unit_text(staged.display_name, texts.display_name, source, err);
  copy_unit_text(staged.plural, texts.plural, source, err);
  copy_unit_text(staged.abbreviation, texts.abbreviation, source, err);
  if (factor <= 0.0) {
    ko_err_fmt(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 304, source, "%s: %f", name, factor);
    return nullptr;
  }
  if (!std::isfinite(factor)) {
    ko_err_fmt(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 358, source, "%s: %f", name, factor);
    return nullptr;
  }
  ko_unit *unit = make_object<ko_unit>(type, name);
  if (unit == nullptr) {
    report_no_memory(err, source, name);
    return nullptr;
  }
  std::memcpy(unit->display_name, staged.display_name, sizeof unit->display_name);
  std::memcpy(unit->plural, staged.plural, sizeof unit->plural);
  std::memcpy(unit->abbreviation, staged.abbreviation, sizeof unit->abbreviation);
  unit->factor = factor;
  unit->refcode = 0;
  return unit;
}

ko_unit *unit_build(uint32_t type, const char *name, double factor, const char *source,
                    ko_err *err) {
  return unit_build_texts(type, name, UnitTexts{}, factor, source, err);
}

ko_unit *unit_build_utf8(uint32_t type, const char *name, const char *display_name,
                         const char *plural, const char *abbreviation, double factor,
                         const char *source, ko_err *err) {
  // Wide enough to tell a text that overflows its field from one that fits.
  constexpr int kWide = 2 * KO_UNIT_DISPNAME_SIZE;
  ko_uchar wide[3][kWide] = {};
  const char *utf8[3] = {display_name, plural, abbreviation};
  for (int i = 0; i < 3; ++i)
    if (utf8[i] != nullptr) ko_str_utf8_to_uni(wide[i], utf8[i], kWide);
  return unit_build_texts(type, name, UnitTexts{wide[0], wide[1], wide[2]}, factor, source, err);
}

ko_unit *unit_from_row(uint32_t type, const ko_unit_entry &row, const char *source, ko_err *err) {
  ko_unit *unit = unit_build(type, row.name, row.factor, source, err);
  if (unit == nullptr) return nullptr;
  ko_object_code_set(unit, row.code, row.code, 0, 0, table_authority(row.code), "");
  ko_object_status_set(unit, KO_STATUS_CODE);
  return unit;
}

void report_unknown_code(ko_err *err, int number, const char *source, int32_t code) {
  ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_OBJECT, number, source, "d", static_cast<int>(code));
}

void report_unknown_name(ko_err *err, const char *source, const char *name) {
  ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_OBJECT, 132, source, "s", name != nullptr ? name : "");
}

ko_unit *unit_clone(const void *handle) {
  const ko_unit *src = live_unit(handle);
  if (src == nullptr) return nullptr;
  ko_unit *copy = make_object<ko_unit>(src->header.type, ko_header_get_name(src));
  if (copy == nullptr) return nullptr;
  std::memcpy(copy->display_name, src->display_name, sizeof copy->display_name);
  std::memcpy(copy->plural, src->plural, sizeof copy->plural);
  std::memcpy(copy->abbreviation, src->abbreviation, sizeof copy->abbreviation);
  copy->factor = src->factor;
  copy->refcode = src->refcode;
  if (!header_copy_checked(copy, src)) return release_object(copy);
  return copy;
}

ko_unit *unit_delete(void *handle, uint32_t mask) { return release_object(live_unit(handle, mask)); }

// Units are equal when both are units of a common kind, their names are
// equal by ko_strcmp_ci (case, blanks and ( ) - / \ _ ignored) and their
// factors agree to the library's relative tolerance (ko::rel_eq).  Display
// texts, codes and reference codes are not compared.
bool unit_equal(const void *a, const void *b, uint32_t mask) {
  const ko_unit *ua = live_unit(a, mask);
  const ko_unit *ub = live_unit(b, mask);
  if (ua == nullptr || ub == nullptr || (ua->header.type & ub->header.type) == 0) return false;
  return ko_strcmp_ci(ko_header_get_name(ua), ko_header_get_name(ub)) == 0 &&
         rel_eq(ua->factor, ub->factor);
}

ko_uchar *unit_text(const void *handle, uint32_t mask, UnitField field, ko_uchar *buf) {
  if (buf == nullptr) return nullptr;
  buf[0] = 0;
  const ko_unit *u = live_unit(handle, mask);
  if (u == nullptr) return buf;
  switch (field) {
    case UnitField::kDisplayName:
      ko_strncpy_u(buf, u->display_name, KO_UNIT_DISPNAME_SIZE);
      break;
    case UnitField::kPlural:
      ko_strncpy_u(buf, u->plural, KO_UNIT_DISPNAME_SIZE);
      break;
    case UnitField::kAbbreviation:
      ko_strncpy_u(buf, u->abbreviation, KO_UNIT_ABBR_SIZE);
      break;
  }
  return buf;
}

ko_linunit *new_meter() {
  return reinterpret_cast<ko_linunit *>(unit_build(KO_TYPE_LINUNIT, "Meter", 1.0, "", nullptr));
}

ko_angunit *new_degree() {
  return reinterpret_cast<ko_angunit *>(
      unit_build(KO_TYPE_ANGUNIT, "Degree", kDegreeFactor, "", nullptr));
}

const ko_unit_entry *unit_row_by_name(uint32_t type, const ko_unit_entry *table, const char *name) {
  if (const ko_unit_entry *row = ko_unit_tbl_from_name(table, name)) return row;
  if (name == nullptr || *name == '\0') return nullptr;
  char listed[KO_NAME_SIZE];
  ko_synonym_lookup_by_syn(type, name, nullptr, listed);
  return ko_unit_tbl_from_name(table, listed);
}

// Constructors of one kind: from name and factor, and from its table by
// code and by name.
ko_unit *kind_new_code(const UnitKind &kind, int32_t code, ko_err *err) {
  ko_err_clear(err);
  const ko_unit_entry *row = ko_unit_tbl_from_code(kind.table, code);
  if (row == nullptr) {
    report_unknown_code(err, kind.code_error, kind.code_source, code);
    return nullptr;
  }
  return unit_from_row(kind.type, *row, kind.code_source, err);
}

ko_unit *kind_new_name(const UnitKind &kind, const char *name, ko_err *err) {
  ko_err_clear(err);
  const ko_unit_entry *row = unit_row_by_name(kind.type, kind.table, name);
  if (row == nullptr) {
    report_unknown_name(err, kind.name_source, name);
    return nullptr;
  }
  return unit_from_row(kind.type, *row, kind.name_source, err);
}

}  // namespace ko

namespace {

constexpr ko::UnitKind kLinear = KO_UNIT_KIND(linunit, KO_TYPE_LINUNIT, ko_linunit_tbl, 212);
constexpr ko::UnitKind kAngular = KO_UNIT_KIND(angunit, KO_TYPE_ANGUNIT, ko_angunit_tbl, 211);
constexpr ko::UnitKind kScale = KO_UNIT_KIND(scaleunit, KO_TYPE_SCALEUNIT, ko_scaleunit_tbl, 210);
constexpr ko::UnitKind kArea = KO_UNIT_KIND(areaunit, KO_TYPE_AREAUNIT, ko_areaunit_tbl, 210);

}  // namespace

KO_DEFINE_UNIT_KIND(linunit, ko_linunit, kLinear)
KO_DEFINE_UNIT_KIND(angunit, ko_angunit, kAngular)
KO_DEFINE_UNIT_KIND(scaleunit, ko_scaleunit, kScale)
KO_DEFINE_UNIT_KIND(areaunit, ko_areaunit, kArea)
