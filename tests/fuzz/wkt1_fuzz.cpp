// Fuzzes the text readers: any input goes through ko_object_from_string_errext;
// whatever it reads is written back with a range of options, and the text
// written must read again.  Sanitizers catch memory errors and leaks.
#include "ko.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

// With KO_STR_HIDDEN every sub-object is written (without it a hidden
// datum, say, leaves a text that cannot be read back), so those texts must
// read again.
constexpr uint32_t kOptions[] = {
    0,
    KO_STR_HIDDEN | KO_STR_AUTH_ALL | KO_STR_DISP_ALL | KO_STR_AUTH_VERSION,
    KO_STR_HIDDEN | KO_STR_CANONICAL_NAMES | KO_STR_UNIT_NAMES | KO_STR_FULL_PRECISION,
    KO_STR_HIDDEN | KO_STR_EXPAND_TABS | KO_STR_NO_METADATA,
};

// Writes obj with options into a buffer as large as the writer asks for.
std::string write(const void *obj, uint32_t options, const char *authority) {
  std::vector<char> buf(KO_STR_BUFFER_SIZE);
  int needed = ko_object_to_string_auth_len(obj, authority, options, static_cast<int>(buf.size()), buf.data());
  if (needed > 0) {
    buf.resize(static_cast<std::size_t>(needed));
    if (ko_object_to_string_auth_len(obj, authority, options, needed, buf.data()) != 0) std::abort();
  }
  return buf.data();
}

// The keyword (and alternate) each reader searches the text for.
struct Keyword {
  uint32_t type;
  const char *keyword;
  const char *alt;
};
constexpr Keyword kKeywords[] = {
    {KO_TYPE_GEOGCS, "GEOGCS", nullptr},       {KO_TYPE_PROJCS, "PROJCS", nullptr},
    {KO_TYPE_VERTCS, "VERTCS", "VERT_CS"},     {KO_TYPE_GXYZCS, "GXYZCS", nullptr},
    {KO_TYPE_HVCOORDSYS, "HVCOORDSYS", "COMPD_CS"}, {KO_TYPE_DATUM, "DATUM", nullptr},
    {KO_TYPE_VDATUM, "VDATUM", "VERT_DATUM"},  {KO_TYPE_GEOGTRAN, "GEOGTRAN", nullptr},
    {KO_TYPE_VERTTRAN, "VERTTRAN", nullptr},   {KO_TYPE_LINUNIT, "LINUNIT", "UNIT"},
    {KO_TYPE_ANGUNIT, "ANGUNIT", "UNIT"},      {KO_TYPE_SCALEUNIT, "SCALEUNIT", "UNIT"},
    {KO_TYPE_AREAUNIT, "AREAUNIT", nullptr},   {KO_TYPE_PRIMEM, "PRIMEM", nullptr},
    {KO_TYPE_SPHEROID, "SPHEROID", "ELLIPSOID"}, {KO_TYPE_METHOD, "METHOD", nullptr},
    {KO_TYPE_HTMETHOD, "HTMETHOD", nullptr},   {KO_TYPE_VTMETHOD, "VTMETHOD", nullptr},
    {KO_TYPE_PROJECTION, "PROJECTION", nullptr}, {KO_TYPE_PARAMETER, "PARAMETER", nullptr},
    {KO_TYPE_AUTHORITY, "AUTHORITY", "ID"},    {KO_TYPE_DISPNAME, "DISPNAME", nullptr},
    {KO_TYPE_METADATA, "METADATA", nullptr},   {KO_TYPE_EPOCH, "EPOCH", nullptr},
    {KO_TYPE_ARRAY, "ARRAY", nullptr},         {KO_TYPE_ADJHCS, "ADJHCS", nullptr},
};

// The writers put names between double quotes as they are, so a name read
// with a double quote in it (from single quotes or a doubled quote) makes
// text that does not read back.  The text is split as the reader of the
// object's type split it (a generic unit is read as UNIT).
bool has_quoted_quote(const std::string &text, uint32_t type) {
  const char *keyword = "UNIT";
  const char *alt = nullptr;
  for (const Keyword &k : kKeywords)
    if (k.type == type) {
      keyword = k.keyword;
      alt = k.alt;
    }
  static ko_wkt_tokens tokens;
  if (ko_wkt_str_to_tokens(&tokens, text.c_str(), keyword, alt) != 0) return true;
  for (int i = 0; i < tokens.count; ++i)
    if ((tokens.tokens[i].flags & KO_WKT_TOKEN_QUOTED) != 0 && std::strchr(tokens.tokens[i].text, '"') != nullptr)
      return true;
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  // The first byte picks the naming authority; the rest is the text.
  const char *authorities[] = {nullptr, "PostGIS", "EPSG"};
  const char *authority = size > 0 ? authorities[data[0] % 3] : nullptr;
  std::string text(reinterpret_cast<const char *>(data) + (size > 0 ? 1 : 0), size > 0 ? size - 1 : 0);
  ko_err err;
  void *obj = ko_object_from_string_auth_errext(text.c_str(), authority, &err);
  if (obj == nullptr) {
    if (err.severity != KO_SEV_ERROR) std::abort();  // a failed read always says why
    return 0;
  }
  const bool must_read_back = !has_quoted_quote(text, ko_object_type(obj));
  for (uint32_t options : kOptions) {
    std::string written = write(obj, options, authority);
    if (written.empty()) continue;  // hidden objects write nothing by default
    void *again = ko_object_from_string_auth_errext(written.c_str(), authority, &err);
    if (again == nullptr && must_read_back && (options & KO_STR_HIDDEN) != 0) std::abort();
    ko_object_del(again);
  }
  ko_object_del(obj);
  return 0;
}
