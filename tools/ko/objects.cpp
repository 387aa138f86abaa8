// Turning what the user typed into a library object: a catalogue code, a
// name, WKT text, or a file holding WKT.
#include "cli.h"

#include <sys/stat.h>

#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace ko::cli {
namespace {

constexpr uint32_t kTypeOrder[] = {
    KO_TYPE_PROJCS,    KO_TYPE_GEOGCS,    KO_TYPE_VERTCS,   KO_TYPE_GXYZCS,    KO_TYPE_HVCOORDSYS,
    KO_TYPE_GEOGTRAN,  KO_TYPE_VERTTRAN,  KO_TYPE_DATUM,    KO_TYPE_VDATUM,    KO_TYPE_SPHEROID,
    KO_TYPE_PRIMEM,    KO_TYPE_LINUNIT,   KO_TYPE_ANGUNIT,  KO_TYPE_SCALEUNIT, KO_TYPE_AREAUNIT,
    KO_TYPE_PROJECTION, KO_TYPE_PARAMETER, KO_TYPE_METHOD,  KO_TYPE_HTMETHOD,  KO_TYPE_VTMETHOD,
    KO_TYPE_EXTENT,
};

struct TypeText {
  uint32_t type;
  const char *description;
};
constexpr TypeText kDescriptions[] = {
    {KO_TYPE_PROJCS, "projected coordinate system"},
    {KO_TYPE_GEOGCS, "geographic coordinate system"},
    {KO_TYPE_COORDSYS, "geographic or projected coordinate system"},
    {KO_TYPE_VERTCS, "vertical coordinate system"},
    {KO_TYPE_GXYZCS, "geocentric coordinate system"},
    {KO_TYPE_HVCOORDSYS, "compound coordinate system"},
    {KO_TYPE_GEOGTRAN, "geographic transformation"},
    {KO_TYPE_VERTTRAN, "vertical transformation"},
    {KO_TYPE_TRANSFORM, "transformation"},
    {KO_TYPE_DATUM, "datum"},
    {KO_TYPE_VDATUM, "vertical datum"},
    {KO_TYPE_HVDATUM, "datum"},
    {KO_TYPE_SPHEROID, "spheroid"},
    {KO_TYPE_PRIMEM, "prime meridian"},
    {KO_TYPE_LINUNIT, "linear unit"},
    {KO_TYPE_ANGUNIT, "angular unit"},
    {KO_TYPE_SCALEUNIT, "scale unit"},
    {KO_TYPE_AREAUNIT, "area unit"},
    {KO_TYPE_UNIT, "unit"},
    {KO_TYPE_PROJECTION, "projection"},
    {KO_TYPE_PARAMETER, "parameter"},
    {KO_TYPE_METHOD, "transformation method"},
    {KO_TYPE_HTMETHOD, "height transformation method"},
    {KO_TYPE_VTMETHOD, "vertical transformation method"},
    {KO_TYPE_EXTENT, "area of use"},
    {KO_TYPE_METADATA, "area of use"},
};

// Words an analyst may type for a type, beside the library's own names.
struct TypeAlias {
  const char *alias;
  uint32_t type;
};
constexpr TypeAlias kAliases[] = {
    {"projected", KO_TYPE_PROJCS},     {"geographic", KO_TYPE_GEOGCS},
    {"vertical", KO_TYPE_VERTCS},      {"geocentric", KO_TYPE_GXYZCS},
    {"compound", KO_TYPE_HVCOORDSYS},  {"transformation", KO_TYPE_GEOGTRAN},
    {"area", KO_TYPE_EXTENT},
};

bool is_regular_file(const std::string &path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

// The text of a file, or of standard input for "-"; false when unreadable.
bool read_text(const std::string &path, std::string &text) {
  const bool from_stdin = path == "-";
  std::FILE *in = from_stdin ? stdin : std::fopen(path.c_str(), "rb");
  if (in == nullptr) return false;
  char buf[65536];
  size_t got = 0;
  while ((got = std::fread(buf, 1, sizeof buf, in)) > 0) text.append(buf, got);
  const bool ok = std::ferror(in) == 0;
  if (!from_stdin) std::fclose(in);
  return ok;
}

// "32633" or "EPSG:32633" (any authority name of letters before the colon).
bool parse_code(std::string_view what, long &code) {
  const size_t colon = what.find(':');
  if (colon != std::string_view::npos) {
    const std::string_view authority = what.substr(0, colon);
    if (authority.empty()) return false;
    for (char c : authority)
      if (std::isalpha(static_cast<unsigned char>(c)) == 0) return false;
    what.remove_prefix(colon + 1);
  }
  return parse_integer(what, 1, INT32_MAX, code);
}

bool type_allowed(uint32_t type, std::span<const uint32_t> types) {
  for (uint32_t allowed : types)
    if ((type & allowed) != 0) return true;
  return false;
}

std::string allowed_types_text(std::span<const uint32_t> types) {
  if (types.size() == 1) return with_article(type_description(types.front()));
  if (types.size() == 2 && types[0] == KO_TYPE_PROJCS && types[1] == KO_TYPE_GEOGCS)
    return "a projected or geographic coordinate system";
  return "an object of the types asked for";
}

// The first of the types that knows the code, else the catalogue's type of
// the code when it lies outside the allowed ones.
Object<void> from_code(std::string_view what, int32_t code, std::span<const uint32_t> types) {
  ko_err first_err{};
  for (uint32_t type : types) {
    ko_err err{};
    if (void *obj = ko_factory_object_from_code(type, code, &err)) return Object<void>(obj);
    if (first_err.severity == KO_SEV_NONE) first_err = err;
  }
  for (uint32_t type : kTypeOrder) {
    if (type_allowed(type, types)) continue;
    Object<void> other(ko_factory_object_from_code(type, code, nullptr));
    if (other) {
      complain("%.*s is %s (%s), not %s", static_cast<int>(what.size()), what.data(),
               with_article(type_description(type)).c_str(), object_name(other.get()).c_str(),
               allowed_types_text(types).c_str());
      return nullptr;
    }
  }
  report(first_err);
  return nullptr;
}

Object<void> from_name(const std::string &name, std::span<const uint32_t> types) {
  ko_err first_err{};
  for (uint32_t type : types) {
    ko_err err{};
    if (void *obj = ko_factory_object_from_name(type, name.c_str(), &err))
      return Object<void>(obj);
    if (first_err.severity == KO_SEV_NONE) first_err = err;
  }
  report(first_err);
  return nullptr;
}

Object<void> from_text(const std::string &text, std::span<const uint32_t> types,
                       const char *authority) {
  ko_err err{};
  Object<void> obj(ko_object_from_string_auth_errext(text.c_str(), authority, &err));
  report(err);  // a warning may come with an object
  if (!obj) return nullptr;
  const uint32_t type = ko_object_type(obj.get());
  if (!type_allowed(type, types)) {
    complain("the text holds %s (%s), not %s", with_article(type_description(type)).c_str(),
             object_name(obj.get()).c_str(), allowed_types_text(types).c_str());
    return nullptr;
  }
  return obj;
}

}  // namespace

std::string with_article(const char *noun) {
  const bool vowel = noun[0] != '\0' && std::strchr("aeiou", noun[0]) != nullptr;
  return std::string(vowel ? "an " : "a ") + noun;
}

std::span<const uint32_t> default_type_order() { return kTypeOrder; }

const char *type_description(uint32_t type) {
  for (const TypeText &row : kDescriptions)
    if (row.type == type) return row.description;
  const char *name = ko_type_to_name(type);
  return (name != nullptr && *name != '\0') ? name : "object";
}

uint32_t type_from_name(std::string_view name) {
  const std::string text(name);
  if (uint32_t type = ko_abbr_to_type(text.c_str())) return type;
  for (const TypeAlias &alias : kAliases)
    if (ko_strcmp_i(text.c_str(), alias.alias) == 0) return alias.type;
  return 0;
}

Object<void> load_object(std::string_view what, std::span<const uint32_t> types,
                         const char *authority) {
  const std::string arg(what);
  if (arg.empty()) {
    complain("an empty name names nothing");
    return nullptr;
  }
  if (ko_string_type(arg.c_str()) != KO_STRTYPE_NONE) return from_text(arg, types, authority);
  long code = 0;
  if (parse_code(what, code)) return from_code(what, static_cast<int32_t>(code), types);
  if (arg == "-" || is_regular_file(arg)) {
    std::string text;
    if (!read_text(arg, text)) {
      complain("cannot read %s: %s", arg == "-" ? "standard input" : arg.c_str(),
               std::strerror(errno));
      return nullptr;
    }
    return from_text(text, types, authority);
  }
  return from_name(arg, types);
}

}  // namespace ko::cli
