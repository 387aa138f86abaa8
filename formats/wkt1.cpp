// WKT1 dispatch: the writer of an object by its type code, the reader of a
// text by the type asked for or by its first keyword.
#include "formats/wkt1.h"

#include <cstring>

namespace {

using namespace ko::wkt1;

// The uniform writer and reader forms of the typed functions.
template <class T, int (*Write)(const T *, const char *, uint32_t, int, char *)>
int write_as(const void *obj, const char *authority, uint32_t options, int size, char *buf) {
  return Write(static_cast<const T *>(obj), authority, options, size, buf);
}
template <class T, T *(*Read)(const char *, const char *, ko_err *)>
void *read_as(const char *text, const char *authority, ko_err *err) {
  return Read(text, authority, err);
}

using ReadFn = void *(*)(const char *, const char *, ko_err *);

// Every object type with a WKT1 form: its type code, writer and reader.
struct TypeRow {
  uint32_t type;
  ko_formatter_write_fn write;
  ReadFn read;
};

#define KO_WKT1_ROW(t, T, TYPE) \
  TypeRow { TYPE, write_as<T, ko_wkt_##t##_to_str>, read_as<T, ko_wkt_##t##_from_str> }

constexpr TypeRow kTypes[] = {
    KO_WKT1_ROW(geogcs, ko_geogcs, KO_TYPE_GEOGCS),
    KO_WKT1_ROW(datum, ko_datum, KO_TYPE_DATUM),
    KO_WKT1_ROW(spheroid, ko_spheroid, KO_TYPE_SPHEROID),
    KO_WKT1_ROW(primem, ko_primem, KO_TYPE_PRIMEM),
    KO_WKT1_ROW(linunit, ko_linunit, KO_TYPE_LINUNIT),
    KO_WKT1_ROW(angunit, ko_angunit, KO_TYPE_ANGUNIT),
    KO_WKT1_ROW(scaleunit, ko_scaleunit, KO_TYPE_SCALEUNIT),
    KO_WKT1_ROW(areaunit, ko_areaunit, KO_TYPE_AREAUNIT),
    KO_WKT1_ROW(unit, ko_unit, KO_TYPE_UNIT),
    KO_WKT1_ROW(parameter, ko_parameter, KO_TYPE_PARAMETER),
    KO_WKT1_ROW(projection, ko_projection, KO_TYPE_PROJECTION),
    KO_WKT1_ROW(authority, ko_authority, KO_TYPE_AUTHORITY),
    KO_WKT1_ROW(dispname, ko_dispname, KO_TYPE_DISPNAME),
    KO_WKT1_ROW(metadata, ko_metadata, KO_TYPE_METADATA),
    KO_WKT1_ROW(projcs, ko_projcs, KO_TYPE_PROJCS),
    KO_WKT1_ROW(method, ko_method, KO_TYPE_METHOD),
    KO_WKT1_ROW(geogtran, ko_geogtran, KO_TYPE_GEOGTRAN),
    KO_WKT1_ROW(vdatum, ko_vdatum, KO_TYPE_VDATUM),
    KO_WKT1_ROW(vertcs, ko_vertcs, KO_TYPE_VERTCS),
    KO_WKT1_ROW(gxyzcs, ko_gxyzcs, KO_TYPE_GXYZCS),
    KO_WKT1_ROW(hvcoordsys, ko_hvcoordsys, KO_TYPE_HVCOORDSYS),
    KO_WKT1_ROW(verttran, ko_verttran, KO_TYPE_VERTTRAN),
    KO_WKT1_ROW(vtmethod, ko_vtmethod, KO_TYPE_VTMETHOD),
    KO_WKT1_ROW(htmethod, ko_htmethod, KO_TYPE_HTMETHOD),
    KO_WKT1_ROW(array, ko_array, KO_TYPE_ARRAY),
    KO_WKT1_ROW(epoch, ko_epoch, KO_TYPE_EPOCH),
    KO_WKT1_ROW(adjhcs, ko_adjhcs, KO_TYPE_ADJHCS),
};

const TypeRow *row_of(uint32_t type) {
  for (const TypeRow &row : kTypes)
    if (row.type == type) return &row;
  return nullptr;
}

// The keywords of an untyped read, in the order they are tried: a prefix
// match chooses the reader.
struct KeywordRow {
  const char *keyword;
  ReadFn read;
};

constexpr KeywordRow kLeadingKeywords[] = {
    {"ADJHCS", read_as<ko_adjhcs, ko_wkt_adjhcs_from_str>},
    {"VERTTRAN", read_as<ko_verttran, ko_wkt_verttran_from_str>},
    {"HVCOORDSYS", read_as<ko_hvcoordsys, ko_wkt_hvcoordsys_from_str>},
    {"COMPD_CS", read_as<ko_hvcoordsys, ko_wkt_hvcoordsys_from_str>},
};

constexpr KeywordRow kKeywords[] = {
    {"GEOGTRAN", read_as<ko_geogtran, ko_wkt_geogtran_from_str>},
    {"PROJCS", read_as<ko_projcs, ko_wkt_projcs_from_str>},
    {"GEOGCS", read_as<ko_geogcs, ko_wkt_geogcs_from_str>},
    {"VERTCS", read_as<ko_vertcs, ko_wkt_vertcs_from_str>},
    {"GXYZCS", read_as<ko_gxyzcs, ko_wkt_gxyzcs_from_str>},
    {"DATUM", read_as<ko_datum, ko_wkt_datum_from_str>},
    {"VDATUM", read_as<ko_vdatum, ko_wkt_vdatum_from_str>},
    {"VERT_DATUM", read_as<ko_vdatum, ko_wkt_vdatum_from_str>},
    {"ANGUNIT", read_as<ko_angunit, ko_wkt_angunit_from_str>},
    {"LINUNIT", read_as<ko_linunit, ko_wkt_linunit_from_str>},
    {"SCALEUNIT", read_as<ko_scaleunit, ko_wkt_scaleunit_from_str>},
    {"AREAUNIT", read_as<ko_areaunit, ko_wkt_areaunit_from_str>},
    {"UNIT", read_as<ko_unit, ko_wkt_unit_from_str>},
    {"PRIMEM", read_as<ko_primem, ko_wkt_primem_from_str>},
    {"SPHEROID", read_as<ko_spheroid, ko_wkt_spheroid_from_str>},
    {"ELLIPSOID", read_as<ko_spheroid, ko_wkt_spheroid_from_str>},
    {"METHOD", read_as<ko_method, ko_wkt_method_from_str>},
    {"HTMETHOD", read_as<ko_htmethod, ko_wkt_htmethod_from_str>},
    {"PROJECTION", read_as<ko_projection, ko_wkt_projection_from_str>},
    {"PARAMETER", read_as<ko_parameter, ko_wkt_parameter_from_str>},
    {"AUTHORITY", read_as<ko_authority, ko_wkt_authority_from_str>},
    {"DISPNAME", read_as<ko_dispname, ko_wkt_dispname_from_str>},
    {"METADATA", read_as<ko_metadata, ko_wkt_metadata_from_str>},
    {"EPOCH", read_as<ko_epoch, ko_wkt_epoch_from_str>},
    {"ARRAY", read_as<ko_array, ko_wkt_array_from_str>},
    {"VTMETHOD", read_as<ko_vtmethod, ko_wkt_vtmethod_from_str>},
};

constexpr bool is_letter(unsigned char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool contains_ci(const char *text, const char *word) {
  std::size_t n = std::strlen(word);
  for (; *text != '\0'; ++text)
    if (ko_strncmp_i(text, word, static_cast<int>(n)) == 0) return true;
  return false;
}

// A text holding a vertical system and a horizontal one is a compound
// system, whatever its first keyword.
bool is_compound(const char *text) {
  return contains_ci(text, "vertcs") && (contains_ci(text, "projcs") || contains_ci(text, "geogcs"));
}


// Reads any object and keeps it only when its type is one of mask.
void *read_of_types(uint32_t mask, const char *text, const char *authority, ko_err *err) {
  void *obj = ko_wkt_str_to_object_no_type(text, authority, err);
  if (obj == nullptr || ko_header_is_type(obj, mask) != 0) return obj;
  ko_object_del(obj);
  ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_PARSE, 426, "ko_wkt_str_to_object", "s",
             ko_type_to_name(mask));
  return nullptr;
}

// Writes an object whose type is one of mask, else an empty text.
int write_of_types(uint32_t mask, const void *obj, const char *authority, uint32_t options,
                   int size, char *buf) {
  if (ko_header_is_type(obj, mask) != 0)
    if (const TypeRow *row = row_of(ko_object_type(obj))) return row->write(obj, authority, options, size, buf);
  if (buf != nullptr && size > 0) buf[0] = '\0';
  return 0;
}

}  // namespace

extern "C" {

int ko_wkt_object_to_str(const void *obj, const char *authority, uint32_t options, int size,
                         char *buf) {
  if (buf != nullptr && size > 0) buf[0] = '\0';
  const TypeRow *row = row_of(ko_object_type(obj));
  if (row == nullptr) return -1;
  int result = row->write(obj, authority, options, size, buf);
  if ((options & (KO_STR_EXPAND | KO_STR_EXPAND_TABS)) == 0) return result;
  if (result == 0) return ko_str_expand_wkt(buf, "", options, size, buf);
  // The plain text did not fit: the size needed is that of the expanded
  // text, so expand a full copy just to measure it.
  ko::Owned<char> plain(static_cast<char *>(ko_allocate_rtn(static_cast<std::size_t>(result), 0, "wkt text")));
  if (plain == nullptr || row->write(obj, authority, options, result, plain.get()) != 0) return result;
  return ko_str_expand_wkt(plain.get(), "", options, 0, nullptr);
}

void *ko_wkt_str_to_object_no_type(const char *text, const char *authority, ko_err *err) {
  if (text == nullptr) return nullptr;
  const char *start = text;
  while (*start != '\0' && !is_letter(static_cast<unsigned char>(*start))) ++start;
  for (const KeywordRow &row : kLeadingKeywords)
    if (ko_strncmp_ci2(start, row.keyword) == 0) return row.read(text, authority, err);
  if (is_compound(text)) return ko_wkt_hvcoordsys_from_str(text, authority, err);
  for (const KeywordRow &row : kKeywords)
    if (ko_strncmp_ci2(start, row.keyword) == 0) return row.read(text, authority, err);
  return nullptr;
}

void *ko_wkt_str_to_object(uint32_t type, const char *text, const char *authority, ko_err *err) {
  if (type == 0) return ko_wkt_str_to_object_no_type(text, authority, err);
  if (const TypeRow *row = row_of(type)) return row->read(text, authority, err);
  return read_of_types(type, text, authority, err);
}

int ko_wkt_coordsys_to_str(const void *obj, const char *authority, uint32_t options, int size,
                           char *buf) {
  return write_of_types(KO_TYPE_COORDSYS, obj, authority, options, size, buf);
}

void *ko_wkt_coordsys_from_str(const char *text, const char *authority, ko_err *err) {
  return read_of_types(KO_TYPE_COORDSYS, text, authority, err);
}

int ko_wkt_hvdatum_to_str(const void *obj, const char *authority, uint32_t options, int size,
                          char *buf) {
  return write_of_types(KO_TYPE_HVDATUM, obj, authority, options, size, buf);
}

void *ko_wkt_hvdatum_from_str(const char *text, const char *authority, ko_err *err) {
  return read_of_types(KO_TYPE_HVDATUM, text, authority, err);
}

int ko_wkt_transform_to_str(const void *obj, const char *authority, uint32_t options, int size,
                            char *buf) {
  return write_of_types(KO_TYPE_TRANSFORM, obj, authority, options, size, buf);
}

void *ko_wkt_transform_from_str(const char *text, const char *authority, ko_err *err) {
  return read_of_types(KO_TYPE_TRANSFORM, text, authority, err);
}

}  // extern "C"
