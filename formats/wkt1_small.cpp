// WKT1 of the small node types: AUTHORITY (also read as ID), DISPNAME,
// METADATA, PARAMETER and PROJECTION.
#include "formats/wkt1.h"

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

// The header of a named node, its name chosen by the writers' rule.
void put_named_header(TextOut &out, const char *keyword, const void *obj, const char *authority,
                      uint32_t options) {
  char name[KO_NAME_SIZE];
  put_header(out, keyword, choose_name(obj, authority, options, name));
}

// Reads a node that holds only a name and its extras, building the object
// from the library's name.
template <class T, class Make>
T *read_name_only(const Reader &r, int index, int *end_index, const char *keyword, uint32_t type,
                  Make make) {
  Node node;
  Children c;
  Extras extras;
  if (!open_node(r, index, keyword, nullptr, node) || !scan_children(r, node, {}, c) ||
      !read_extras(r, c, extras))
    return nullptr;
  char name[KO_NAME_SIZE];
  library_name(r, type, node, name);
  T *obj = construct(r, [&](ko_err *e) { return make(name, e); });
  if (obj == nullptr) return nullptr;
  set_end(end_index, node);
  return static_cast<T *>(finish_object(obj, node, extras));
}

// A node of the name-only kind written back: KEYWORD["name"] and its tail.
int write_name_only(const void *obj, uint32_t type, const char *keyword, const char *authority,
                    uint32_t options, int size, char *buf) {
  TextOut out(buf, size);
  if (skip_object(obj, type, options)) return out.finish();
  put_named_header(out, keyword, obj, authority, options);
  put_tail(out, obj, nullptr, authority, options);
  return out.finish();
}

}  // namespace

namespace ko::wkt1 {

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
  Reader r{tokens, authority, err};
  Node node;
  Children c;
  if (tokens == nullptr || !open_node(r, index, "AUTHORITY", "ID", node) ||
      !scan_children(r, node, {}, c))
    return nullptr;
  if (node.name[0] == '\0') {
    report(err, 474, node.keyword, "");
    return nullptr;
  }
  const char *code_text = value_text(r, c, 0);
  if (code_text == nullptr) {
    report(err, 473, node.keyword, node.name);
    return nullptr;
  }
  double code = 0.0;
  if (!whole_number(r, code_text, node, std::numeric_limits<int32_t>::min(),
                    std::numeric_limits<int32_t>::max(), code))
    return nullptr;
  const char *version = value_text(r, c, 1);
  ko_authority *a = construct(r, [&](ko_err *e) {
    return ko_authority_new_errext(node.name, static_cast<int32_t>(code), version, e);
  });
  if (a != nullptr) set_end(end_index, node);
  return a;
}

ko_authority *ko_wkt_authority_from_str(const char *text, const char *authority, ko_err *err) {
  return read_text(text, authority, err, "AUTHORITY", "ID", ko_wkt_authority_from_tokens);
}

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

ko_dispname *ko_wkt_dispname_from_str(const char *text, const char *authority, ko_err *err) {
  return read_text(text, authority, err, "DISPNAME", nullptr, ko_wkt_dispname_from_tokens);
}

// --- METADATA ----------------------------------------------------------------

int ko_wkt_metadata_to_str(const ko_metadata *m, const char *authority, uint32_t options, int size,
                           char *buf) {
  TextOut out(buf, size);
  if (skip_object(m, KO_TYPE_METADATA, options)) return out.finish();
  put_named_header(out, "METADATA", m, authority, options);
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
  Reader r{tokens, authority, err};
  Node node;
  Children c;
  Extras extras;
  if (tokens == nullptr || !open_node(r, index, "METADATA", nullptr, node) ||
      !scan_children(r, node, {}, c))
    return nullptr;
  double v[6] = {};
  for (int k = 0; k < 6; ++k)
    if (!value_number(r, node, c, k, 471, v[k])) return nullptr;
  double area = 0.0;
  if (const char *text = value_text(r, c, 6);
      text != nullptr && !whole_number(r, text, node, 0.0, 4294967295.0, area))
    return nullptr;
  if (!read_extras(r, c, extras)) return nullptr;
  char name[KO_NAME_SIZE];
  library_name(r, KO_TYPE_METADATA, node, name);
  const ko_gcs_extent extent{v[0], v[1], v[2], v[3], v[4], v[5]};
  ko_metadata *m = construct(r, [&](ko_err *e) {
    return ko_metadata_new_errext(name, &extent, static_cast<uint32_t>(area), e);
  });
  if (m == nullptr) return nullptr;
  set_end(end_index, node);
  return static_cast<ko_metadata *>(finish_object(m, node, extras));
}

ko_metadata *ko_wkt_metadata_from_str(const char *text, const char *authority, ko_err *err) {
  return read_text(text, authority, err, "METADATA", nullptr, ko_wkt_metadata_from_tokens);
}

// --- PARAMETER ---------------------------------------------------------------

int ko_wkt_parameter_to_str(const ko_parameter *p, const char *authority, uint32_t options,
                            int size, char *buf) {
  TextOut out(buf, size);
  if (skip_object(p, KO_TYPE_PARAMETER, options)) return out.finish();
  put_named_header(out, "PARAMETER", p, authority, options);
  put_number(out, ko_parameter_value(p), options);
  put_tail(out, p, nullptr, authority, options);
  return out.finish();
}

// PARAMETER["name", value]: error 450 without a value.  The value is kept
// as written, without unit; the object holding the parameter gives it its
// unit.
ko_parameter *ko_wkt_parameter_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                           int index, int *end_index, ko_err *err) {
  Reader r{tokens, authority, err};
  Node node;
  Children c;
  Extras extras;
  double value = 0.0;
  if (tokens == nullptr || !open_node(r, index, "PARAMETER", nullptr, node) ||
      !scan_children(r, node, {}, c) || !value_number(r, node, c, 0, 450, value) ||
      !read_extras(r, c, extras))
    return nullptr;
  char name[KO_NAME_SIZE];
  library_name(r, KO_TYPE_PARAMETER, node, name);
  ko_parameter *p = construct(r, [&](ko_err *e) { return ko_parameter_new_errext(name, value, e); });
  if (p == nullptr) return nullptr;
  set_end(end_index, node);
  return static_cast<ko_parameter *>(finish_object(p, node, extras));
}

ko_parameter *ko_wkt_parameter_from_str(const char *text, const char *authority, ko_err *err) {
  return read_text(text, authority, err, "PARAMETER", nullptr, ko_wkt_parameter_from_tokens);
}

// --- PROJECTION --------------------------------------------------------------

int ko_wkt_projection_to_str(const ko_projection *p, const char *authority, uint32_t options,
                             int size, char *buf) {
  return write_name_only(p, KO_TYPE_PROJECTION, "PROJECTION", authority, options, size, buf);
}

// PROJECTION["name"]: a name the projection list does not know is error
// 309 with the name.
ko_projection *ko_wkt_projection_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                             int index, int *end_index, ko_err *err) {
  Reader r{tokens, authority, err};
  if (tokens == nullptr) return nullptr;
  return read_name_only<ko_projection>(
      r, index, end_index, "PROJECTION", KO_TYPE_PROJECTION, [&](const char *name, ko_err *e) {
        if (ko_projlist_from_name(name) == nullptr) {
          ko_err_arg(e, KO_SEV_ERROR, KO_ERRCAT_PARSE, 309, "PROJECTION", "s", name);
          return static_cast<ko_projection *>(nullptr);
        }
        return ko_projlist_projection_from_name(name, e);
      });
}

ko_projection *ko_wkt_projection_from_str(const char *text, const char *authority, ko_err *err) {
  return read_text(text, authority, err, "PROJECTION", nullptr, ko_wkt_projection_from_tokens);
}

}  // extern "C"
