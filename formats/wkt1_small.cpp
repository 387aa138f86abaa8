// WKT1 of the small node types: AUTHORITY (also read as ID), DISPNAME,
// METADATA, PARAMETER, PROJECTION, HTMETHOD, ARRAY and EPOCH.
#include "formats/wkt1.h"

#include <array>
#include <cmath>
#include <limits>

namespace {

using ko::text::TextOut;
using namespace ko::wkt1;

// A number token that must be a whole number within [low, high]; 475
// otherwise.
bool whole_number(const Reader &r, const char *text, const Node &node, double low, double high,
                  double &value) {
  if (!parse_number(r, text, node, value)) return false;
  if (value == std::floor(value) && value >= low && value <= high) return true;
  report(r.err, 475, node.keyword, text);
  return false;
}

void put_authority_fields(TextOut &out, const char *name, int32_t code, const char *version,
                          uint32_t options) {
  out.put("AUTHORITY[\"");
  out.put(name);
  out.put('"');
  put_integer(out, code);
  if ((options & KO_STR_AUTH_VERSION) != 0 && version != nullptr && version[0] != '\0')
    put_quoted(out, version);
  out.put(']');
}

}  // namespace

namespace ko::wkt1 {

int write_parameter(const ko_parameter *p, double value, const char *authority, uint32_t options,
                    int size, char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, p, KO_TYPE_PARAMETER, "PARAMETER", authority, options)) return out.finish();
  put_number(out, value, options);
  put_tail(out, p, nullptr, authority, options);
  return out.finish();
}

void put_authority_of(TextOut &out, const void *obj, uint32_t options) {
  if (const ko_authority *a = ko_header_get_authority(obj)) {
    char name[KO_NAME_SIZE];
    char version[24];
    out.put(',');
    put_authority_fields(out, ko_authority_authname(a, name), ko_authority_authcode(a),
                         ko_authority_version(a, version), options);
    return;
  }
  const char *name = ko_header_get_auth_name(obj);
  int32_t code = ko_header_get_code_external(obj);
  if (name[0] == '\0' || code < 1) return;
  out.put(',');
  put_authority_fields(out, name, code, ko_header_get_auth_ver(obj), options);
}

}  // namespace ko::wkt1

extern "C" {

// --- AUTHORITY ---------------------------------------------------------------

int ko_wkt_authority_to_str(const ko_authority *a, const char *, uint32_t options, int size,
                            char *buf) {
  TextOut out(buf, size);
  if (ko_authority_p(a) == 0) return out.finish();
  char name[KO_NAME_SIZE];
  char version[24];
  put_authority_fields(out, ko_authority_authname(a, name), ko_authority_authcode(a),
                       ko_authority_version(a, version), options);
  return out.finish();
}

// AUTHORITY["name", code, "version"]: the code may be quoted; error 474
// without a name, 473 without a code, 475 for a code that is not a whole
// number in range.
ko_authority *ko_wkt_authority_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                           int index, int *end_index, ko_err *err) {
  NodeRead n(tokens, authority, err);
  if (!n.open(index, "AUTHORITY", "ID")) return nullptr;
  const char *code_text = value_text(n.r, n.c, 0);
  int missing = n.node.name[0] == '\0' ? 474 : code_text == nullptr ? 473 : 0;
  if (missing != 0) {
    report(err, missing, n.node.keyword, n.node.name);
    return nullptr;
  }
  double code = 0.0;
  if (!whole_number(n.r, code_text, n.node, std::numeric_limits<int32_t>::min(),
                    std::numeric_limits<int32_t>::max(), code))
    return nullptr;
  const char *version = value_text(n.r, n.c, 1);
  ko_authority *a = construct(n.r, [&](ko_err *e) {
    return ko_authority_new_errext(n.node.name, static_cast<int32_t>(code), version, e);
  });
  if (a != nullptr) set_end(end_index, n.node);
  return a;
}

KO_WKT1_DEFINE_FROM_STR(authority, ko_authority, "AUTHORITY", "ID")

// --- DISPNAME ----------------------------------------------------------------

int ko_wkt_dispname_to_str(const ko_dispname *d, const char *, uint32_t, int size, char *buf) {
  TextOut out(buf, size);
  if (ko_dispname_p(d) == 0) return out.finish();
  ko_uchar units[KO_NAME_SIZE];
  char utf8[KO_NAME_SIZE * 3];
  ko_str_uni_to_utf8(utf8, ko_dispname_uname(d, units), static_cast<int>(sizeof utf8));
  put_header(out, "DISPNAME", utf8);
  out.put(']');
  return out.finish();
}

ko_dispname *ko_wkt_dispname_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                         int index, int *end_index, ko_err *err) {
  Reader r{tokens, authority, err};
  Node node;
  if (tokens == nullptr || !open_node(r, index, "DISPNAME", nullptr, node)) return nullptr;
  ko_dispname *d = construct(r, [&](ko_err *e) { return ko_dispname_new_errext(node.name, e); });
  if (d != nullptr) set_end(end_index, node);
  return d;
}

KO_WKT1_DEFINE_FROM_STR(dispname, ko_dispname, "DISPNAME", nullptr)

// --- METADATA ----------------------------------------------------------------

int ko_wkt_metadata_to_str(const ko_metadata *m, const char *authority, uint32_t options, int size,
                           char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, m, KO_TYPE_METADATA, "METADATA", authority, options)) return out.finish();
  const ko_gcs_extent *e = ko_metadata_gcs_extent_ptr(m);
  for (double v : {e->west, e->south, e->east, e->north, e->lon_step, e->lat_step})
    put_number(out, v, options);
  put_integer(out, ko_metadata_areacode(m));
  put_tail(out, m, nullptr, authority, options);
  return out.finish();
}

// METADATA["name", six extent numbers, area code]: a missing extent
// number is error 471; the area code may be left out (0).
ko_metadata *ko_wkt_metadata_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                         int index, int *end_index, ko_err *err) {
  NodeRead n(tokens, authority, err);
  if (!n.open(index, "METADATA", nullptr)) return nullptr;
  double v[6] = {};
  for (int k = 0; k < 6; ++k)
    if (!value_number(n.r, n.node, n.c, k, 471, v[k])) return nullptr;
  double area = 0.0;
  if (const char *text = value_text(n.r, n.c, 6);
      text != nullptr && !whole_number(n.r, text, n.node, 0.0, 4294967295.0, area))
    return nullptr;
  if (!n.read_extras()) return nullptr;
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_METADATA, name);
  const ko_gcs_extent extent{v[0], v[1], v[2], v[3], v[4], v[5]};
  return n.done(construct(n.r, [&](ko_err *e) {
                  return ko_metadata_new_errext(name, &extent, static_cast<uint32_t>(area), e);
                }),
                end_index);
}

KO_WKT1_DEFINE_FROM_STR(metadata, ko_metadata, "METADATA", nullptr)

// --- PARAMETER ---------------------------------------------------------------

// A parameter on its own carries its unit, if it has one, and its value in
// that unit.  Inside a projected system or a transformation the holder's
// writer leaves the unit out: there the holder's units are the values'.
int ko_wkt_parameter_to_str(const ko_parameter *p, const char *authority, uint32_t options,
                            int size, char *buf) {
  const ko_unit *unit = ko_parameter_unit(p);
  if (unit == nullptr) return write_parameter(p, ko_parameter_value(p), authority, options, size, buf);
  TextOut out(buf, size);
  if (!begin_node(out, p, KO_TYPE_PARAMETER, "PARAMETER", authority, options)) return out.finish();
  put_number(out, ko_parameter_value_si(p) / ko_unit_factor(unit), options);
  put_child(out, ko_wkt_unit_to_str, unit, authority, level_of(options).child_options);
  put_tail(out, p, nullptr, authority, options);
  return out.finish();
}

// PARAMETER["name", value, UNIT]: error 450 without a value, 416 for a
// second UNIT.  Without a UNIT the value is kept as written and the object
// holding the parameter gives it its unit; with one the parameter reports
// its value in that unit.
ko_parameter *ko_wkt_parameter_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                           int index, int *end_index, ko_err *err) {
  static constexpr ChildKind kChildren[] = {{"UNIT", nullptr, 416}};
  NodeRead n(tokens, authority, err);
  double value = 0.0;
  ko::Unique<ko_unit> unit;
  if (!n.open(index, "PARAMETER", nullptr, kChildren) || !value_number(n.r, n.node, n.c, 0, 450, value) ||
      !read_child(n.r, n.c.first[0], ko_wkt_unit_from_tokens, unit) || !n.read_extras())
    return nullptr;
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_PARAMETER, name);
  ko_parameter *p =
      construct(n.r, [&](ko_err *e) { return ko_parameter_ext_new_errext(name, unit.get(), value, e); });
  if (p != nullptr && unit != nullptr) ko_parameter_dflt_factor_set(p, ko_unit_factor(unit.release()));
  return n.done(p, end_index);
}

KO_WKT1_DEFINE_FROM_STR(parameter, ko_parameter, "PARAMETER", nullptr)

// --- PROJECTION --------------------------------------------------------------

int ko_wkt_projection_to_str(const ko_projection *p, const char *authority, uint32_t options,
                             int size, char *buf) {
  return write_name_only(p, KO_TYPE_PROJECTION, "PROJECTION", authority, options, size, buf);
}

// PROJECTION["name"]: a name the projection list does not know is error
// 309 with the name.
ko_projection *ko_wkt_projection_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                             int index, int *end_index, ko_err *err) {
  return read_name_only<ko_projection>(
      tokens, authority, index, end_index, err, "PROJECTION", KO_TYPE_PROJECTION,
      [](const char *name, ko_err *e) -> ko_projection * {
        if (ko_projlist_from_name(name) != nullptr) return ko_projlist_projection_from_name(name, e);
        ko_err_arg(e, KO_SEV_ERROR, KO_ERRCAT_PARSE, 309, "PROJECTION", "s", name);
        return nullptr;
      });
}

KO_WKT1_DEFINE_FROM_STR(projection, ko_projection, "PROJECTION", nullptr)

// --- HTMETHOD ----------------------------------------------------------------

int ko_wkt_htmethod_to_str(const ko_htmethod *m, const char *authority, uint32_t options, int size,
                           char *buf) {
  return write_name_only(m, KO_TYPE_HTMETHOD, "HTMETHOD", authority, options, size, buf);
}

// HTMETHOD["name"]: a name the adjustment method list does not know is
// error 306.
ko_htmethod *ko_wkt_htmethod_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                         int index, int *end_index, ko_err *err) {
  return read_name_only<ko_htmethod>(tokens, authority, index, end_index, err, "HTMETHOD",
                                     KO_TYPE_HTMETHOD, ko_htmethlist_htmethod_from_name);
}

KO_WKT1_DEFINE_FROM_STR(htmethod, ko_htmethod, "HTMETHOD", nullptr)

// --- ARRAY -------------------------------------------------------------------

int ko_wkt_array_to_str(const ko_array *a, const char *authority, uint32_t options, int size,
                        char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, a, KO_TYPE_ARRAY, "ARRAY", authority, options)) return out.finish();
  const int count = ko_array_num_values(a);
  put_integer(out, count);
  for (int i = 0; i < count; ++i) put_number(out, ko_array_value(a, i), options);
  put_child(out, ko_wkt_unit_to_str, ko_array_unit(a), authority, level_of(options).child_options);
  put_tail(out, a, nullptr, authority, options);
  return out.finish();
}

// ARRAY["name", number of values, values..., UNIT]: error 448 without the
// number, 425 when the values that follow are not that many, 416 for a
// second UNIT.
ko_array *ko_wkt_array_from_tokens(const ko_wkt_tokens *tokens, const char *authority, int index,
                                   int *end_index, ko_err *err) {
  static constexpr ChildKind kChildren[] = {{"UNIT", nullptr, 416}};
  NodeRead n(tokens, authority, err);
  double count = 0.0;
  if (!n.open(index, "ARRAY", nullptr, kChildren) || !value_number(n.r, n.node, n.c, 0, 448, count))
    return nullptr;
  std::array<double, KO_WKT_MAX_TOKENS> values{};
  const int given = n.c.value_count - 1;
  if (count != given) {
    report(err, 425, n.node.keyword, n.node.name);
    return nullptr;
  }
  for (int i = 0; i < given; ++i)
    if (!value_number(n.r, n.node, n.c, i + 1, 0, values[static_cast<std::size_t>(i)])) return nullptr;
  ko::Unique<ko_unit> unit;
  if (!read_child(n.r, n.c.first[0], ko_wkt_unit_from_tokens, unit) || !n.read_extras()) return nullptr;
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_ARRAY, name);
  ko_array *a = construct(n.r, [&](ko_err *e) {
    return ko_array_new_errext(name, given, values.data(), unit.get(), e);
  });
  if (a != nullptr) unit.release();
  return n.done(a, end_index);
}

KO_WKT1_DEFINE_FROM_STR(array, ko_array, "ARRAY", nullptr)

// --- EPOCH -------------------------------------------------------------------

// EPOCH[decimal year]: an epoch has no name, the year stands in its place.
int ko_wkt_epoch_to_str(const ko_epoch *e, const char *, uint32_t options, int size, char *buf) {
  TextOut out(buf, size);
  if (ko_epoch_p(e) == 0) return out.finish();
  char year[32];
  ko_dtoa(year, (options & KO_STR_FULL_PRECISION) != 0 ? 17 : 16, ko_epoch_year(e));
  out.put("EPOCH[");
  out.put(year);
  out.put(']');
  return out.finish();
}

// Error 479 for an empty year, 475 for one that is not a number.
ko_epoch *ko_wkt_epoch_from_tokens(const ko_wkt_tokens *tokens, const char *authority, int index,
                                   int *end_index, ko_err *err) {
  Reader r{tokens, authority, err};
  Node node;
  double year = 0.0;
  if (tokens == nullptr || !open_node(r, index, "EPOCH", nullptr, node)) return nullptr;
  if (node.name[0] == '\0') {
    report(err, 479, node.keyword, "");
    return nullptr;
  }
  if (!parse_number(r, node.name, node, year)) return nullptr;
  ko_epoch *e = construct(r, [&](ko_err *rec) { return ko_epoch_new_errext(year, rec); });
  if (e != nullptr) set_end(end_index, node);
  return e;
}

KO_WKT1_DEFINE_FROM_STR(epoch, ko_epoch, "EPOCH", nullptr)

}  // extern "C"
