// Point input and output shared by "ko project" and "ko transform": lines
// of text or CSV rows read in blocks, the coordinates of a block converted
// by one call of a converter, the rows written back in their order with
// every failure reported by line number.
#pragma once

#include "cli.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

namespace ko::cli {

// Why a point was not converted.
enum class Failure : uint8_t {
  kNone,
  kUnreadable,      // no number where a coordinate should be
  kLatitude,        // a latitude beyond the poles
  kProjection,      // outside the projection's domain
  kTransformation,  // outside what the transformation covers
};

// One block of points, converted in place by a converter.
struct PointBlock {
  std::span<double> xy;         // n (x, y) or (longitude, latitude) pairs
  std::span<double> z;          // n heights (0 where none was given); empty: no heights
  std::span<Failure> failures;  // n; the converter marks what it could not convert
};

// Converts a block; false stops the whole run (the reason has been said).
using Converter = std::function<bool(PointBlock &block)>;

// Radians in one unit of a geographic system's angular unit (degrees when
// it has none).
double angular_factor(const ko_geogcs *gcs);
// Marks the points whose latitude (in a unit of `factor` radians) lies
// beyond a pole: the library would clamp them silently.
void reject_beyond_poles(PointBlock &block, double factor);
// Projects (or with inverse, unprojects) a block in place with one call;
// the points the projection could not convert are marked.
void project_block(ko_projcs *pcs, PointBlock &block, bool inverse);

// Where the coordinates sit in the input and where the results go.
struct PointsOptions {
  std::string input_path;  // empty or "-": standard input
  bool csv = false;
  char delimiter = ',';
  bool header = true;  // CSV: the first line names the columns
  // Columns by name or 1-based number; empty: the usual names.
  std::string lon_column, lat_column, x_column, y_column, height_column;
  bool read_heights = false;      // a third coordinate is read and converted
  bool input_geographic = true;   // longitude/latitude in, else x/y
  bool output_geographic = false; // longitude/latitude out, else x/y
  int precision = -1;             // decimals; -1: 9 for angles, 3 for lengths
};

// Reads every line, converts the points block by block and writes the
// results to standard output.  Returns the exit status: 0, 1 when some
// lines were reported, 2 when the input could not be read, a converter
// stopped the run or the output could not be written.
int convert_points(const PointsOptions &options, const Converter &convert);

// The input and output options common to both commands: their manual
// entries, their getopt_long rows (codes from kPointOptionBase up), and
// their handling.
inline constexpr int kPointOptionBase = 1000;
std::span<const OptionDoc> point_option_docs();
// A command's own getopt_long rows followed by those of the shared options.
std::vector<option> with_point_options(std::initializer_list<option> own);
enum class OptionResult { kNotMine, kTaken, kRefused };
// The FILE operand; false after a usage error when --input named one too.
bool take_input_operand(const CommandDoc &doc, std::string_view file, PointsOptions &options);
OptionResult take_point_option(const CommandDoc &doc, int code, const char *argument,
                               PointsOptions &options);

// The paragraphs on the input and output format, for the manuals.
extern const std::string_view kPointsFormatText;

}  // namespace ko::cli
