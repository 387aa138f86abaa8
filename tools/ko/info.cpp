// "ko info": one object as WKT, with its authority, area of use, status
// and, for a projected system, the projection's class and properties.
#include "commands.h"

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace ko::cli {
namespace {

constexpr std::string_view kSynopsis[] = {
    "ko info [-t TYPE] [-c] [-f FORMAT] [-a NAME] [-q] OBJECT",
};

constexpr OptionDoc kOptions[] = {
    {"-t, --type TYPE",
     "Look the code or name up among objects of TYPE only: projcs, geogcs, vertcs, gxyzcs, "
     "hvcoordsys, geogtran, verttran, datum, vdatum, spheroid, primem, linunit, angunit, "
     "scaleunit, areaunit, projection, parameter, method, extent (or their short names such "
     "as pcs and gcs). Without it a code or name is tried as a projected system, then as a "
     "geographic system, then as each other type in that order; use it when a code means "
     "different objects in different types (1188 is both a transformation and an area of "
     "use, for instance)."},
    {"-c, --compact", "Write the WKT on one line instead of indented over several."},
    {"-f, --format FORMAT",
     "The text format: wkt1 (the default). wkt2 and proj4 are refused while the library "
     "cannot write them."},
    {"-a, --authority NAME",
     "Spell names as the naming authority NAME does (for instance EPSG or PostGIS), in the "
     "WKT written and in WKT read."},
    {"-q, --wkt-only", "Write the WKT only, without the summary after it."},
};

constexpr ExampleDoc kExamples[] = {
    {"The UTM zone 33 north system of WGS 84, by its EPSG code:", "ko info 32633"},
    {"A geographic system by name, as one line of WKT:", "ko info --compact \"NAD27\""},
    {"The area of use 1188 rather than the transformation of the same code:",
     "ko info --type extent 1188"},
    {"What a WKT file holds:", "ko info mysystem.prj"},
};

constexpr std::string_view kDescription =
    "Writes the object that OBJECT names as WKT (the library's WKT1 dialect), indented "
    "for reading, then a summary: its name, type, authority and code, status (from the "
    "catalogue, read from text, replaced code, deprecated), its area of use with the "
    "bounding box in degrees and, by type, its parts: for a projected system its "
    "geographic system, unit and projection with the projection's class (cylindric, "
    "conic, azimuthal ...) and properties (conformal, equal-area ...); for a geographic "
    "system its datum, spheroid, prime meridian and unit; for a transformation its two "
    "systems, method and accuracy.\n"
    "\n"
    "OBJECT is a catalogue code (32633 or EPSG:32633), a name (\"WGS 84 / UTM zone 33N\", "
    "\"WGS_1984_UTM_Zone_33N\"; case, spaces and underscores do not matter), WKT text, or a "
    "file that holds WKT (\"-\" reads it from standard input).";

constexpr std::string_view kExitStatus =
    "0 when the object was written; 2 for a usage error, an unknown code or name, text "
    "that is not valid WKT, or an object that the library cannot write in the format "
    "asked for (the summary is still written).";

enum InfoOption { kType = 't', kCompact = 'c', kFormat = 'f', kAuthority = 'a', kWktOnly = 'q' };

constexpr option kLongOptions[] = {
    {"type", required_argument, nullptr, kType},
    {"compact", no_argument, nullptr, kCompact},
    {"format", required_argument, nullptr, kFormat},
    {"authority", required_argument, nullptr, kAuthority},
    {"wkt-only", no_argument, nullptr, kWktOnly},
};

struct InfoOptions {
  uint32_t type = 0;
  bool compact = false;
  uint32_t format = KO_STR_FMT_WKT1;
  const char *format_name = "wkt1";
  std::string authority;
  bool wkt_only = false;
};

struct FormatName {
  const char *name;
  uint32_t bit;
};
constexpr FormatName kFormats[] = {
    {"wkt1", KO_STR_FMT_WKT1},
    {"wkt2", KO_STR_FMT_WKT2},
    {"proj4", KO_STR_FMT_PROJ4},
};

// The object's text; empty when the format wrote nothing.
std::string object_text(const void *obj, const InfoOptions &options) {
  uint32_t flags = options.format | KO_STR_AUTH_TOP;
  if (!options.compact) flags |= KO_STR_EXPAND;
  const char *authority = options.authority.empty() ? nullptr : options.authority.c_str();
  std::vector<char> buf(KO_STR_BUFFER_SIZE);
  for (int attempt = 0; attempt < 4; ++attempt) {
    const int needed = ko_object_to_string_auth_len(obj, authority, flags,
                                                    static_cast<int>(buf.size()), buf.data());
    if (needed <= 0) return buf.data();
    buf.assign(static_cast<size_t>(needed) + 1, '\0');
  }
  return {};
}

void line(const char *label, const std::string &value) {
  if (!value.empty()) std::printf("%-18s %s\n", label, value.c_str());
}

std::string number_text(double value) {
  char buf[32];
  return ko_dtoa(buf, 15, value);
}

std::string status_text(const void *obj) {
  const uint32_t status = ko_object_status(obj);
  std::vector<std::string> words;
  if ((status & KO_STATUS_CODE) != 0) words.emplace_back("from the catalogue by code");
  if ((status & KO_STATUS_STRING) != 0)
    words.emplace_back(ko_object_string_type(obj) != 0 ? "read from text"
                                                       : "from the catalogue by name");
  if ((status & KO_STATUS_USER) != 0) words.emplace_back("user-defined");
  if ((status & KO_STATUS_CODECHANGE) != 0)
    words.push_back("code " + std::to_string(ko_object_get_orig_code(obj)) + " replaced by " +
                    std::to_string(ko_object_code(obj)));
  if ((status & KO_STATUS_DISCONTINUED) != 0) words.emplace_back("deprecated");
  if ((status & KO_STATUS_DEAD) != 0) words.emplace_back("dead");
  if ((status & KO_STATUS_DONOTUSE) != 0) words.emplace_back("do not use");
  std::string text;
  for (const std::string &word : words) append_item(text, "; ", word);
  return text.empty() ? "built by the caller" : text;
}

// The metadata vector of each type that has areas of use.
template <class T, ko_metadata **(*Areas)(const T *)>
ko_metadata **areas_of(const void *obj) {
  return Areas(static_cast<const T *>(obj));
}

struct AreaGetter {
  uint32_t type;
  ko_metadata **(*areas)(const void *obj);
};
constexpr AreaGetter kAreaGetters[] = {
    {KO_TYPE_PROJCS, areas_of<ko_projcs, ko_projcs_metadata_vector>},
    {KO_TYPE_GEOGCS, areas_of<ko_geogcs, ko_geogcs_metadata_vector>},
    {KO_TYPE_GEOGTRAN, areas_of<ko_geogtran, ko_geogtran_metadata_vector>},
    {KO_TYPE_VERTCS, areas_of<ko_vertcs, ko_vertcs_metadata_vector>},
    {KO_TYPE_GXYZCS, areas_of<ko_gxyzcs, ko_gxyzcs_metadata_vector>},
    {KO_TYPE_HVCOORDSYS, areas_of<ko_hvcoordsys, ko_hvcoordsys_metadata_vector>},
    {KO_TYPE_VERTTRAN, areas_of<ko_verttran, ko_verttran_metadata_vector>},
};

// The first area of use; an area of use is its own.
const ko_metadata *area_of_use(const void *obj) {
  const uint32_t type = ko_object_type(obj);
  if (type == KO_TYPE_METADATA) return static_cast<const ko_metadata *>(obj);
  for (const AreaGetter &getter : kAreaGetters) {
    if (getter.type != type) continue;
    ko_metadata **areas = getter.areas(obj);
    return areas != nullptr ? areas[0] : nullptr;
  }
  return nullptr;
}

void print_area(const void *obj) {
  const ko_metadata *area = area_of_use(obj);
  if (area == nullptr) return;
  std::string name = object_name(area);
  if (const uint32_t code = ko_metadata_areacode(area); code != 0)
    name += " (area " + std::to_string(code) + ")";
  line("area of use:", name);
  ko_gcs_extent box{};
  ko_metadata_gcs_extent(area, &box);
  if (ko_gcs_extent_empty(&box) == 0)
    line("bounds:", "west " + number_text(box.west) + ", south " + number_text(box.south) +
                        ", east " + number_text(box.east) + ", north " +
                        number_text(box.north) + " (degrees)");
}

std::string named_with_code(const void *obj) {
  std::string text = object_name(obj);
  if (const std::string code = authority_code(obj); !code.empty()) text += " (" + code + ")";
  return text;
}

std::string projection_text(const ko_projection *projection) {
  const int32_t code = ko_object_code(projection);
  std::string text = object_name(projection) + " (" + std::to_string(code) + ")";
  const int klass = ko_proj_class(code);
  for (const ko_proj_attr_entry *row = ko_proj_class_tbl; row->value != 0; ++row)
    if (static_cast<int>(row->value) == klass) text += std::string(", ") + row->short_name;
  std::string properties;
  const uint32_t bits = ko_proj_props(code);
  for (const ko_proj_attr_entry *row = ko_proj_props_tbl; row->value != 0; ++row)
    if ((bits & row->value) != 0)
      append_item(properties, ", ", row->short_name);
  if (!properties.empty()) text += "; " + properties;
  return text;
}

void print_projcs_parts(const void *obj) {
  const auto *pcs = static_cast<const ko_projcs *>(obj);
  line("geographic system:", named_with_code(ko_projcs_geogcs(pcs)));
  line("projection:", projection_text(ko_projcs_projection(pcs)));
  line("unit:", object_name(ko_projcs_unit(pcs)));
}

void print_geogcs_parts(const void *obj) {
  const auto *gcs = static_cast<const ko_geogcs *>(obj);
  const ko_datum *datum = ko_geogcs_datum(gcs);
  const ko_spheroid *spheroid = ko_datum_spheroid(datum);
  line("datum:", named_with_code(datum));
  const double f = ko_spheroid_flattening(spheroid);
  line("spheroid:", named_with_code(spheroid) + ", a = " + number_text(ko_spheroid_axis(spheroid)) +
                        " m, 1/f = " +
                        (f > 0.0 ? number_text(1.0 / f) : std::string("0 (sphere)")));
  const ko_primem *primem = ko_geogcs_primem(gcs);
  line("prime meridian:",
       object_name(primem) + " (" + number_text(ko_primem_longitude(primem)) + " degrees)");
  line("unit:", object_name(ko_geogcs_unit(gcs)));
}

void print_geogtran_parts(const void *obj) {
  const auto *gt = static_cast<const ko_geogtran *>(obj);
  line("from:", named_with_code(ko_geogtran_geogcs1(gt)));
  line("to:", named_with_code(ko_geogtran_geogcs2(gt)));
  line("method:", named_with_code(ko_geogtran_method(gt)));
  const double accuracy = ko_geogtran_accuracy(gt);
  line("accuracy:", accuracy >= 999.0 ? std::string("unknown") : number_text(accuracy) + " m");
}

// The parts that the summary shows, by type.
struct PartsPrinter {
  uint32_t type;
  void (*print)(const void *obj);
};
constexpr PartsPrinter kPartsPrinters[] = {
    {KO_TYPE_PROJCS, print_projcs_parts},
    {KO_TYPE_GEOGCS, print_geogcs_parts},
    {KO_TYPE_GEOGTRAN, print_geogtran_parts},
};

void print_parts(const void *obj) {
  for (const PartsPrinter &printer : kPartsPrinters)
    if (printer.type == ko_object_type(obj)) printer.print(obj);
}

void print_summary(const void *obj) {
  line("name:", object_name(obj));
  line("type:", type_description(ko_object_type(obj)));
  std::string authority = authority_code(obj);
  if (const char *version = ko_header_get_auth_ver(obj);
      !authority.empty() && version != nullptr && *version != '\0')
    authority += std::string(" (dataset version ") + version + ")";
  line("authority:", authority.empty() ? std::string("none") : authority);
  line("status:", status_text(obj));
  print_area(obj);
  print_parts(obj);
}

bool take_option(int code, const char *argument, InfoOptions &options) {
  switch (code) {
    case kType:
      options.type = type_from_name(argument);
      if (options.type == 0 || ko_factory_count(options.type) < 0) {
        usage_error(kInfoDoc, "unknown type '%s'", argument);
        return false;
      }
      return true;
    case kCompact: options.compact = true; return true;
    case kWktOnly: options.wkt_only = true; return true;
    case kAuthority: options.authority = argument; return true;
    case kFormat:
      for (const FormatName &format : kFormats) {
        if (ko_strcmp_i(argument, format.name) == 0) {
          options.format = format.bit;
          options.format_name = format.name;
          return true;
        }
      }
      usage_error(kInfoDoc, "unknown format '%s' (wkt1, wkt2 or proj4)", argument);
      return false;
    default: return false;
  }
}

}  // namespace

const CommandDoc kInfoDoc = {
    "info", "describe a coordinate system, datum, transformation or other object",
    kSynopsis, kDescription, {}, kOptions, {}, kExamples, kExitStatus,
};

int run_info(int argc, char **argv) {
  InfoOptions options;
  const ParsedOptions parsed = parse_options(
      argc, argv, kInfoDoc, kLongOptions, "t:cf:a:q",
      [&](int code, const char *argument) { return take_option(code, argument, options); });
  if (parsed.finished()) return parsed.exit_status();
  if (parsed.operands.size() != 1)
    return usage_error(kInfoDoc, "expects one object (a code, name, WKT or file)");

  const uint32_t only[] = {options.type};
  const std::span<const uint32_t> types =
      options.type != 0 ? std::span<const uint32_t>(only) : default_type_order();
  const Object<void> obj = load_object(parsed.operands.front(), types,
                                       options.authority.empty() ? nullptr
                                                                 : options.authority.c_str());
  if (!obj) return kExitUsage;

  // A format, or a type in a format, that the library cannot write yet
  // leaves the text empty: the summary is still shown, the status says so.
  const std::string text = object_text(obj.get(), options);
  if (text.empty()) {
    complain("the library cannot write %s as %s text yet",
             with_article(type_description(ko_object_type(obj.get()))).c_str(),
             options.format_name);
  } else {
    std::printf("%s\n", text.c_str());
  }
  if (!options.wkt_only) {
    if (!text.empty()) std::printf("\n");
    print_summary(obj.get());
  }
  return text.empty() ? kExitUsage : kExitOk;
}

}  // namespace ko::cli
