// "ko list": the catalogue's objects of one type, filtered by a name
// pattern and by a point that their area of use must hold.
#include "commands.h"

#include <string>
#include <vector>

namespace ko::cli {
namespace {

constexpr std::string_view kSynopsis[] = {
    "ko list [--area LON,LAT] [--deprecated] TYPE [PATTERN]",
};

constexpr OptionDoc kOptions[] = {
    {"-a, --area LON,LAT",
     "Keep only the objects whose area of use holds the point at longitude LON and latitude "
     "LAT, in degrees (for coordinate systems and transformations, which have one)."},
    {"-d, --deprecated",
     "Also list the objects that the catalogue marks as deprecated and the codes it has "
     "replaced, with \"(deprecated)\" or \"(deprecated, replaced by CODE)\" after the "
     "name."},
};

constexpr ExampleDoc kExamples[] = {
    {"Every UTM zone of WGS 84:", "ko list projcs \"WGS_1984_UTM_Zone_*\""},
    {"The projected systems whose name mentions Germany:", "ko list projcs germany"},
    {"The projected systems whose area of use holds Berlin:",
     "ko list --area 13.4,52.5 projcs"},
    {"The transformations whose area of use holds Paris:",
     "ko list --area 2.35,48.85 geogtran"},
};

constexpr std::string_view kDescription =
    "Writes one line per catalogue object of TYPE: its authority and code, then its name, in "
    "ascending order of code. TYPE is one of projcs, geogcs, vertcs, gxyzcs, hvcoordsys, "
    "coordsys (geographic and projected systems together), geogtran, verttran, datum, "
    "vdatum, spheroid, primem, linunit, angunit, scaleunit, areaunit, unit, projection, "
    "parameter, method, htmethod, vtmethod or extent (areas of use); the short names (pcs, "
    "gcs, gtf ...) and the words projected, geographic, vertical, geocentric, compound, "
    "transformation and area are understood too.\n"
    "\n"
    "PATTERN keeps the objects whose name or code it matches, ignoring case: '*' matches "
    "any run of characters and '?' one character; a space matches an underscore. A "
    "pattern without '*' or '?' matches anywhere in the name.";

constexpr std::string_view kExitStatus =
    "0 when the list was written, even when nothing matched (that is said on standard "
    "error); 2 for a usage error or an unknown type.";

enum ListOption { kArea = 'a', kDeprecated = 'd' };

constexpr option kLongOptions[] = {
    {"area", required_argument, nullptr, kArea},
    {"deprecated", no_argument, nullptr, kDeprecated},
};

struct ListOptions {
  bool has_area = false;
  double lon = 0.0;
  double lat = 0.0;
  bool deprecated = false;
};

// A name pattern as the user gave it and as it matches names whose words
// are joined by underscores.
class Pattern {
 public:
  explicit Pattern(std::string_view text) {
    if (text.empty()) text = "*";
    std::string pattern(text);
    if (pattern.find_first_of("*?") == std::string::npos) pattern = "*" + pattern + "*";
    as_given_ = pattern;
    for (char &c : pattern)
      if (c == ' ') c = '_';
    underscored_ = pattern;
  }

  bool matches(const std::string &name, int32_t code) const {
    const std::string digits = std::to_string(code);
    return ko_str_wildcard_match(as_given_.c_str(), name.c_str(), 1) != 0 ||
           ko_str_wildcard_match(underscored_.c_str(), name.c_str(), 1) != 0 ||
           ko_str_wildcard_match(as_given_.c_str(), digits.c_str(), 1) != 0;
  }

 private:
  std::string as_given_;
  std::string underscored_;
};

// The codes to look at: every code of the type, or those whose area of use
// holds the point.  False (after saying why) when the type has no areas.
bool candidate_codes(uint32_t type, const ListOptions &options, std::vector<int32_t> &codes) {
  if (!options.has_area) {
    const int count = ko_factory_count(type);
    codes.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) codes.push_back(ko_factory_code_at(type, i));
    return true;
  }
  const int count = ko_factory_codes_in_extent(type, options.lon, options.lat, nullptr, 0);
  if (count < 0) {
    complain("objects of type %s have no area of use; drop --area", ko_type_to_name(type));
    return false;
  }
  codes.resize(static_cast<size_t>(count));
  if (count > 0) ko_factory_codes_in_extent(type, options.lon, options.lat, codes.data(), count);
  return true;
}

// A deprecated object, or a code that the catalogue has replaced (the
// factory then builds the replacement).
bool is_deprecated(const void *obj) {
  return (ko_object_status(obj) &
          (KO_STATUS_DISCONTINUED | KO_STATUS_DEAD | KO_STATUS_CODECHANGE)) != 0;
}

// "(deprecated)", or "(deprecated, replaced by EPSG:3857)".
std::string deprecation_note(const void *obj) {
  if ((ko_object_status(obj) & KO_STATUS_CODECHANGE) == 0) return " (deprecated)";
  return " (deprecated, replaced by " + authority_code(obj) + ")";
}

bool parse_point(const char *text, ListOptions &options) {
  const std::string_view pair = text;
  const size_t comma = pair.find(',');
  if (comma == std::string_view::npos) return false;
  double lon = 0.0;
  double lat = 0.0;
  if (!parse_number(pair.substr(0, comma), lon) || !parse_number(pair.substr(comma + 1), lat) ||
      lat < -90.0 || lat > 90.0)
    return false;
  options.has_area = true;
  options.lon = lon;
  options.lat = lat;
  return true;
}

bool take_option(int code, const char *argument, ListOptions &options) {
  switch (code) {
    case kArea:
      if (parse_point(argument, options)) return true;
      usage_error(kListDoc, "--area takes LON,LAT in degrees (latitude within +-90), not '%s'",
                  argument);
      return false;
    case kDeprecated: options.deprecated = true; return true;
    default: return false;
  }
}

}  // namespace

const CommandDoc kListDoc = {
    "list", "list the catalogue's objects of one type by name pattern and area of use",
    kSynopsis, kDescription, {}, kOptions, {}, kExamples, kExitStatus,
};

int run_list(int argc, char **argv) {
  ListOptions options;
  const ParsedOptions parsed = parse_options(
      argc, argv, kListDoc, kLongOptions, "a:d",
      [&](int code, const char *argument) { return take_option(code, argument, options); });
  if (parsed.finished()) return parsed.exit_status();
  if (parsed.operands.empty() || parsed.operands.size() > 2)
    return usage_error(kListDoc, "expects a type and at most one pattern");

  const std::string type_name(parsed.operands[0]);
  const uint32_t type = type_from_name(type_name);
  if (type == 0 || ko_factory_count(type) < 0)
    return usage_error(kListDoc, "unknown type '%s'", type_name.c_str());
  const Pattern pattern(parsed.operands.size() > 1 ? parsed.operands[1] : "*");

  std::vector<int32_t> codes;
  if (!candidate_codes(type, options, codes)) return kExitUsage;
  long listed = 0;
  for (int32_t code : codes) {
    const Object<void> obj(ko_factory_object_from_code(type, code, nullptr));
    if (!obj) continue;  // marked do-not-use: the factory does not build it
    const bool deprecated = is_deprecated(obj.get());
    if (deprecated && !options.deprecated) continue;
    const std::string name = object_name(obj.get());
    if (!pattern.matches(name, code)) continue;
    // The code listed, which a replaced code's object no longer carries.
    const char *authority = ko_header_get_auth_name(obj.get());
    std::string label = std::to_string(code);
    if (authority != nullptr && *authority != '\0') label = authority + (":" + label);
    std::printf("%-12s %s%s\n", label.c_str(), name.c_str(),
                deprecated ? deprecation_note(obj.get()).c_str() : "");
    ++listed;
  }
  if (listed == 0) complain("no %s matches", type_description(type));
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    complain("cannot write the output");
    return kExitUsage;
  }
  return kExitOk;
}

}  // namespace ko::cli
