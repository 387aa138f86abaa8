// "ko project": points between a projected system and its own geographic
// system, converted block by block with the library's point functions.
#include "commands.h"
#include "points.h"

#include <vector>

namespace ko::cli {
namespace {

constexpr std::string_view kSynopsis[] = {
    "ko project [--inverse] [options] PROJCS [FILE]",
};

constexpr OptionDoc kOptions[] = {
    {"-I, --inverse",
     "Convert projected coordinates (x y) back to longitude and latitude of the system's "
     "geographic system."},
};

constexpr ExampleDoc kExamples[] = {
    {"A point in Berlin to UTM zone 33 north (WGS 84):", "echo 13.4 52.5 | ko project 32633"},
    {"Back again, with 6 decimals:", "echo 391776.59 5817697.99 | ko project -I -p 6 32633"},
    {"A CSV file with columns name,lon,lat gains columns x and y:",
     "ko project --csv --input cities.csv \"WGS 84 / UTM zone 33N\""},
    {"A CSV file with columns id,E,N to latitude and longitude:",
     "ko project -I --csv --x-column E --y-column N 27700 points.csv"},
};

constexpr std::string_view kDescription =
    "Converts points from the geographic system of the projected system PROJCS to PROJCS "
    "(longitude and latitude to x and y), or back with --inverse. PROJCS is a catalogue "
    "code, a name, WKT text or a file that holds WKT. The points come from FILE, from "
    "--input or from standard input. Longitudes and latitudes are in the angular unit of "
    "the projected system's geographic system and relative to its prime meridian; x and y "
    "are in the projected system's linear unit, false easting and northing included. A "
    "latitude beyond the poles is reported, not clamped.";

constexpr std::string_view kExitStatus =
    "0 when every point was converted; 1 when some lines could not be read or converted "
    "(each is reported on standard error with its line number, and the others are "
    "converted); 2 for a usage error, an unknown system, text that is not valid WKT or "
    "an unreadable input file.";

enum ProjectOption { kInverse = 'I' };

}  // namespace

const CommandDoc kProjectDoc = {
    "project", "project points between longitude/latitude and a projected system",
    kSynopsis, kDescription, kPointsFormatText, kOptions, point_option_docs(), kExamples,
    kExitStatus,
};

int run_project(int argc, char **argv) {
  PointsOptions options;
  bool inverse = false;
  const std::vector<option> table =
      with_point_options({{"inverse", no_argument, nullptr, kInverse}});
  const ParsedOptions parsed = parse_options(
      argc, argv, kProjectDoc, table, "Ip:", [&](int code, const char *argument) {
        if (code == kInverse) {
          inverse = true;
          return true;
        }
        return take_point_option(kProjectDoc, code, argument, options) == OptionResult::kTaken;
      });
  if (parsed.finished()) return parsed.exit_status();
  if (parsed.operands.empty() || parsed.operands.size() > 2)
    return usage_error(kProjectDoc, "expects a projected system and at most one input file");
  if (parsed.operands.size() == 2 && !take_input_operand(kProjectDoc, parsed.operands[1], options))
    return kExitUsage;

  constexpr uint32_t kTypes[] = {KO_TYPE_PROJCS};
  Object<void> obj = load_object(parsed.operands[0], kTypes, nullptr);
  if (!obj) return kExitUsage;
  auto *pcs = static_cast<ko_projcs *>(obj.get());

  options.input_geographic = !inverse;
  options.output_geographic = inverse;
  const double factor = angular_factor(ko_projcs_geogcs(pcs));
  return convert_points(options, [&](PointBlock &block) {
    if (!inverse) reject_beyond_poles(block, factor);
    project_block(pcs, block, inverse);
    return true;
  });
}

}  // namespace ko::cli
