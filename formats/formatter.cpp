// The text-formatter table and the public object text entry points.  On
// output the format bits of the options pick the formatter; on input the
// first characters of the text (its string type) pick the formatters to
// try, in table order.
#include "foundation/foundation.h"
#include "objects/object.h"

namespace {

constexpr char kReadSource[] = "ko_formatter_str_to_object";

const char *skip_space(const char *text) {
  while (ko::is_space(static_cast<unsigned char>(*text))) ++text;
  return text;
}

constexpr bool is_name_char(unsigned char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

}  // namespace

extern "C" {

constinit const ko_formatter ko_formatter_tbl[] = {
    {KO_STR_FMT_WKT2, KO_STRTYPE_BRACKETED, ko_wkt2_object_to_str, ko_wkt2_str_to_object,
     ko_wkt2_object_type},
    {KO_STR_FMT_WKT1, KO_STRTYPE_BRACKETED, ko_wkt_object_to_str, ko_wkt_str_to_object,
     ko_wkt_object_type},
    {KO_STR_FMT_PROJ4, KO_STRTYPE_PROJ4, ko_proj4_object_to_str, ko_proj4_str_to_object,
     ko_proj4_object_type},
    {0, 0, nullptr, nullptr, nullptr},
};

int ko_formatters_string_type(const char *text) {
  if (text == nullptr) return KO_STRTYPE_NONE;
  auto p = reinterpret_cast<const unsigned char *>(text);
  while (*p == 0xEF || *p == 0xBB || *p == 0xBF || *p >= 0xFE) ++p;  // byte-order marks
  if (*p == '<') return KO_STRTYPE_XML;
  if (*p == '+') return KO_STRTYPE_PROJ4;
  while (is_name_char(*p)) ++p;
  while (ko::is_space(*p)) ++p;
  return (*p == '[' || *p == '(') ? KO_STRTYPE_BRACKETED : KO_STRTYPE_NONE;
}

int ko_string_type(const char *text) { return ko_formatters_string_type(text); }

int ko_formatter_object_to_str(const void *obj, const char *authority, uint32_t options, int size,
                               char *buf) {
  if (buf != nullptr && size > 0) buf[0] = '\0';
  uint32_t format = options & KO_STR_FMT_MASK;
  if (format == 0 && (options & KO_STR_FMT_KEEP) != 0)
    format = static_cast<uint32_t>(ko_header_get_str_type(obj)) & KO_STR_FMT_MASK;
  if (format == 0) format = KO_STR_FMT_WKT1;
  for (const ko_formatter *f = ko_formatter_tbl; f->format != 0; ++f)
    if ((f->format & format) != 0) return f->write(obj, authority, options, size, buf);
  return 0;
}

void *ko_formatter_str_to_object(uint32_t type, const char *text, const char *authority,
                                 ko_err *err) {
  ko_err local;
  if (err == nullptr) err = &local;
  ko_err_clear(err);
  const char *start = text != nullptr ? skip_space(text) : nullptr;
  if (start == nullptr || *start == '\0') {
    ko_err_set(err, KO_SEV_ERROR, KO_ERRCAT_PARSE, 456, kReadSource);
    return nullptr;
  }
  int string_type = ko_formatters_string_type(start);
  for (const ko_formatter *f = ko_formatter_tbl; f->format != 0; ++f) {
    if (f->string_type != string_type) continue;
    if (void *obj = f->read(type, text, authority, err)) return obj;
  }
  if (err->severity < KO_SEV_ERROR) ko_err_set(err, KO_SEV_ERROR, KO_ERRCAT_PARSE, 463, kReadSource);
  return nullptr;
}

uint32_t ko_formatter_object_type(const char *text) {
  if (text == nullptr) return 0;
  text = skip_space(text);
  int string_type = ko_formatters_string_type(text);
  for (const ko_formatter *f = ko_formatter_tbl; f->format != 0; ++f) {
    if (f->string_type != string_type) continue;
    if (uint32_t type = f->object_type(text); type != 0) return type;
  }
  return 0;
}

// --- ko_object_to_string family -------------------------------------------

int ko_object_to_string_auth_len(const void *obj, const char *authority, uint32_t options,
                                 int size, char *buf) {
  return ko_formatter_object_to_str(obj, authority, options, size, buf);
}

int ko_object_to_string_len(const void *obj, uint32_t options, int size, char *buf) {
  return ko_object_to_string_auth_len(obj, nullptr, options, size, buf);
}

int ko_object_to_string(const void *obj, char *buf) {
  return ko_object_to_string_auth_len(obj, nullptr, 0, KO_STR_BUFFER_SIZE, buf);
}

int ko_object_to_string_auth(const void *obj, const char *authority, char *buf) {
  return ko_object_to_string_auth_len(obj, authority, 0, KO_STR_BUFFER_SIZE, buf);
}

char *ko_object_to_string_auth_ext(const void *obj, const char *authority, uint32_t options,
                                   char *buf) {
  ko_object_to_string_auth_len(obj, authority, options, KO_STR_BUFFER_SIZE, buf);
  return buf;
}

char *ko_object_to_string_ext(const void *obj, uint32_t options, char *buf) {
  return ko_object_to_string_auth_ext(obj, nullptr, options, buf);
}

// --- ko_object_from_string family -----------------------------------------

void *ko_object_from_string_auth_by_type_errext(uint32_t type, const char *text,
                                                const char *authority, ko_err *err) {
  return ko_formatter_str_to_object(type, text, authority, err);
}

void *ko_object_from_string_auth_by_type(uint32_t type, const char *text, const char *authority) {
  return ko_object_from_string_auth_by_type_errext(type, text, authority, nullptr);
}

void *ko_object_from_string_by_type_errext(uint32_t type, const char *text, ko_err *err) {
  return ko_object_from_string_auth_by_type_errext(type, text, nullptr, err);
}

void *ko_object_from_string_by_type(uint32_t type, const char *text) {
  return ko_object_from_string_auth_by_type_errext(type, text, nullptr, nullptr);
}

void *ko_object_from_string_auth_errext(const char *text, const char *authority, ko_err *err) {
  return ko_object_from_string_auth_by_type_errext(0, text, authority, err);
}

void *ko_object_from_string_errext(const char *text, ko_err *err) {
  return ko_object_from_string_auth_by_type_errext(0, text, nullptr, err);
}

void *ko_object_from_string_auth(const char *text, const char *authority) {
  return ko_object_from_string_auth_by_type_errext(0, text, authority, nullptr);
}

void *ko_object_from_string(const char *text) {
  return ko_object_from_string_auth_by_type_errext(0, text, nullptr, nullptr);
}

uint32_t ko_object_string_to_object_type(const char *text) { return ko_formatter_object_type(text); }

uint32_t ko_object_string_to_object_type_u(const ko_uchar *text) {
  if (text == nullptr) return 0;
  char narrow[KO_WKT_MAX_CHARS + 1];
  int n = 0;
  while (n < KO_WKT_MAX_CHARS && text[n] != 0) {
    narrow[n] = static_cast<char>(text[n] & 0xFF);
    if (narrow[n++] == '[') break;
  }
  narrow[n] = '\0';
  return ko_object_string_to_object_type(narrow);
}

}  // extern "C"
