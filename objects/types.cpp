// The type table (code, name, three-letter abbreviation) and the status
// table (value, macro name, word), with their lookups in both directions.
#include "objects/object.h"

namespace {

struct TypeRow {
  uint32_t code;
  const char *name;
  const char *abbr;
};

// Lookups walk this table in order; the composite codes (coordsys, hvdatum,
// transform, unit) are unions of their members and serve type tests only.
// "unit" leaves areaunit out on purpose: an area unit is no unit where a
// length, angle or scale is expected.
constexpr TypeRow kTypes[] = {
    {KO_TYPE_GEOGCS, "geogcs", "gcs"},
    {KO_TYPE_PROJCS, "projcs", "pcs"},
    {KO_TYPE_COORDSYS, "coordsys", "crs"},
    {KO_TYPE_VERTCS, "vertcs", "vcs"},
    {KO_TYPE_GXYZCS, "gxyzcs", "xyz"},
    {KO_TYPE_HVCOORDSYS, "hvcoordsys", "hvc"},
    {KO_TYPE_DATUM, "datum", "dat"},
    {KO_TYPE_VDATUM, "vdatum", "vdt"},
    {KO_TYPE_HVDATUM, "hvdatum", "hvd"},
    {KO_TYPE_GEOGTRAN, "geogtran", "gtf"},
    {KO_TYPE_VERTTRAN, "verttran", "vtf"},
    {KO_TYPE_TRANSFORM, "transform", "tfm"},
    {KO_TYPE_LINUNIT, "linunit", "lin"},
    {KO_TYPE_ANGUNIT, "angunit", "ang"},
    {KO_TYPE_SCALEUNIT, "scaleunit", "scl"},
    {KO_TYPE_AREAUNIT, "areaunit", "are"},
    {KO_TYPE_UNIT, "unit", "uni"},
    {KO_TYPE_PRIMEM, "primem", "pri"},
    {KO_TYPE_SPHEROID, "spheroid", "sph"},
    {KO_TYPE_METHOD, "method", "mth"},
    {KO_TYPE_HTMETHOD, "htmethod", "htm"},
    {KO_TYPE_VTMETHOD, "vtmethod", "vtm"},
    {KO_TYPE_PROJECTION, "projection", "prj"},
    {KO_TYPE_PARAMETER, "parameter", "par"},
    {KO_TYPE_AUTHORITY, "authority", "ath"},
    {KO_TYPE_DISPNAME, "dispname", "dsp"},
    {KO_TYPE_ADJHCS, "adjhcs", "adj"},
    {KO_TYPE_ARRAY, "array", "arr"},
    {KO_TYPE_AXIS, "axis", "axi"},
    {KO_TYPE_EPOCH, "epoch", "epc"},
    {KO_TYPE_REMARK, "remark", "rem"},
    {KO_TYPE_CONVERSION, "conversion", "cnv"},
    {KO_TYPE_METADATA, "metadata", "mda"},
    {KO_TYPE_EXTENT, "extent", "ext"},
    {0, nullptr, nullptr},
};
static_assert(KO_TYPE_COORDSYS == (KO_TYPE_GEOGCS | KO_TYPE_PROJCS));
static_assert(KO_TYPE_HVDATUM == (KO_TYPE_DATUM | KO_TYPE_VDATUM));
static_assert(KO_TYPE_TRANSFORM == (KO_TYPE_GEOGTRAN | KO_TYPE_VERTTRAN));
static_assert(KO_TYPE_UNIT == (KO_TYPE_LINUNIT | KO_TYPE_ANGUNIT | KO_TYPE_SCALEUNIT));

struct StatusRow {
  int32_t value;
  const char *macro;
  const char *word;
};

// Ends with a row of value -1.
constexpr StatusRow kStatuses[] = {
    {KO_STATUS_NONE, "KO_STATUS_NONE", "none"},
    {KO_STATUS_NEW, "KO_STATUS_NEW", "new"},
    {KO_STATUS_STRING, "KO_STATUS_STRING", "string"},
    {KO_STATUS_CODE, "KO_STATUS_CODE", "code"},
    {KO_STATUS_USER, "KO_STATUS_USER", "user"},
    {KO_STATUS_CODECHANGE, "KO_STATUS_CODECHANGE", "codechange"},
    {KO_STATUS_DISCONTINUED, "KO_STATUS_DISCONTINUED", "discontinued"},
    {KO_STATUS_DEAD, "KO_STATUS_DEAD", "dead"},
    {KO_STATUS_DONOTUSE, "KO_STATUS_DONOTUSE", "do_not_use"},
    {-1, nullptr, nullptr},
};

const TypeRow *type_row(uint32_t code) {
  for (const TypeRow *row = kTypes; row->code != 0; ++row)
    if (row->code == code) return row;
  return nullptr;
}

bool is_empty(const char *text) { return text == nullptr || text[0] == '\0'; }

// Low 8 bits of a run of decimal digits.  Reduction modulo 2^32 keeps the
// low bits exact however long the number is.
uint32_t low_byte_of_digits(const char *text) {
  uint32_t value = 0;
  for (; *text >= '0' && *text <= '9'; ++text) value = value * 10u + static_cast<uint32_t>(*text - '0');
  return value & 0xFFu;
}

}  // namespace

extern "C" {

const char *ko_type_to_name(uint32_t type) {
  const TypeRow *row = type_row(type);
  return row != nullptr ? row->name : "";
}

const char *ko_type_to_abbr(uint32_t type) {
  const TypeRow *row = type_row(type);
  return row != nullptr ? row->abbr : "";
}

uint32_t ko_name_to_type(const char *name) {
  if (is_empty(name)) return 0;
  for (const TypeRow *row = kTypes; row->code != 0; ++row)
    if (ko_strcmp_i(name, row->name) == 0) return row->code;
  return 0;
}

uint32_t ko_abbr_to_type(const char *text) {
  if (is_empty(text)) return 0;
  for (const TypeRow *row = kTypes; row->code != 0; ++row)
    if (ko_strcmp_i(text, row->name) == 0 || ko_strcmp_i(text, row->abbr) == 0) return row->code;
  return 0;
}

// Only single bits name a macro: a status whose low 8 bits are zero, or a
// combination of bits, gives an empty text.  The match uses the low 7 bits,
// so KO_STATUS_DONOTUSE (128) reads back as "KO_STATUS_NONE"; existing
// callers rely on that, so it stays.
const char *ko_status_to_macro(uint32_t status) {
  if ((status & 0xFFu) == 0) return "";
  const auto low7 = static_cast<int32_t>(status & 0x7Fu);
  for (const StatusRow *row = kStatuses; row->value >= 0; ++row)
    if (row->value == low7) return row->macro;
  return "";
}

uint32_t ko_string_to_status(const char *text) {
  if (is_empty(text)) return 0;
  if (text[0] >= '0' && text[0] <= '9') return low_byte_of_digits(text);
  for (const StatusRow *row = kStatuses; row->value >= 0; ++row)
    if (ko_strcmp_i(text, row->word) == 0 || ko_strcmp_i(text, row->macro) == 0)
      return static_cast<uint32_t>(row->value);
  return 0;
}

}  // extern "C"
