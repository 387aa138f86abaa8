// Shared pieces of the ko command-line tool: exit statuses, owned library
// objects, diagnostics, command documentation and option parsing.  The tool
// is a caller like any other: it uses only the public C interface (ko.h).
#pragma once

#include "ko.h"

#include <getopt.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ko::cli {

// Exit statuses, as every command documents them.
inline constexpr int kExitOk = 0;
inline constexpr int kExitSomeFailed = 1;  // some input lines were not converted
inline constexpr int kExitUsage = 2;       // bad usage, unknown object, bad text

// A library object owned by the tool, deleted through the generic dispatch.
struct ObjectDeleter {
  void operator()(void *obj) const { ko_object_del(obj); }
};
template <class T>
using Object = std::unique_ptr<T, ObjectDeleter>;

// Diagnostics on standard error, each line starting with "ko: ".
[[gnu::format(printf, 1, 2)]] void complain(const char *format, ...);
// A library report: "ko: error N: <table text>: <message> (<source>)";
// warnings say "warning" instead of "error".  Nothing for an empty record.
void report(const ko_err &err);

// ---- Documentation -----------------------------------------------------

// One option: how it is written ("-i, --inverse", "--input FILE") and what
// it does (one paragraph).
struct OptionDoc {
  std::string_view flags;
  std::string_view text;
};
// One example: what it does, then the command line.
struct ExampleDoc {
  std::string_view text;
  std::string_view command;
};
// The manual of one command.  Text fields are paragraphs separated by a
// blank line; a paragraph whose lines start with "- " is a list.
struct CommandDoc {
  std::string_view name;
  std::string_view summary;
  std::span<const std::string_view> synopsis;
  std::string_view description;
  std::string_view more_description;  // shared paragraphs after the description
  std::span<const OptionDoc> options;
  std::span<const OptionDoc> shared_options;  // the point input and output options
  std::span<const ExampleDoc> examples;
  std::string_view exit_status;
};

struct Command {
  const CommandDoc *doc;
  int (*run)(int argc, char **argv);  // argv[0] is the command's name
};

// The tool's commands, in the order the manual lists them.
std::span<const Command> commands();

void print_command_help(const CommandDoc &doc, std::FILE *out);
void print_tool_help(std::FILE *out);
// The manual page (troff, man macros), from the same texts as --help.
void print_man_page(std::FILE *out);

// ---- Options -----------------------------------------------------------

// Parses a command's options with getopt_long.  "-h"/"--help" print the
// command's help.  handle(code, argument) returns false for a value it
// refuses (after saying why).  Unknown options and missing arguments are
// reported with a hint to --help.  When finished() the command is done
// and exits with exit_status (after --help, or a usage error).
struct ParsedOptions {
  enum Outcome { kRun, kHelpShown, kBad } outcome;
  std::vector<std::string_view> operands;
  bool finished() const { return outcome != kRun; }
  int exit_status() const { return outcome == kBad ? kExitUsage : kExitOk; }
};
using OptionHandler = std::function<bool(int code, const char *argument)>;
ParsedOptions parse_options(int argc, char **argv, const CommandDoc &doc,
                            std::span<const option> long_options, const char *short_options,
                            const OptionHandler &handle);
// "ko <command>: <text>" and the --help hint; returns kExitUsage.
[[gnu::format(printf, 2, 3)]] int usage_error(const CommandDoc &doc, const char *format, ...);

// ---- Numbers -----------------------------------------------------------

// The whole text as one finite number ("." as decimal point whatever the
// locale); surrounding white space is not allowed.
bool parse_number(std::string_view text, double &out);
// A whole decimal integer within [low, high].
bool parse_integer(std::string_view text, long low, long high, long &out);
// Fixed notation with the given number of decimals, "." as decimal point.
void append_fixed(std::string &out, double value, int decimals);
// Appends item to a list in out, after separator unless out is empty.
void append_item(std::string &out, std::string_view separator, std::string_view item);

// ---- Objects -----------------------------------------------------------

// What the user named: a code ("32633", "EPSG:32633"), a name, WKT text or
// a file (or "-" for standard input) that holds WKT.  types lists the
// catalogue types to try for a code or a name, in order, and the types a
// text may hold.  Failures are reported (the library's own error) and give
// null.  authority: whose spelling of names a text uses (may be empty).
Object<void> load_object(std::string_view what, std::span<const uint32_t> types,
                         const char *authority);
// The catalogue types tried when the user does not pick one: projected,
// then geographic systems, then every other type.
std::span<const uint32_t> default_type_order();
// "projected coordinate system" for KO_TYPE_PROJCS and so on.
const char *type_description(uint32_t type);
// "a projected coordinate system", "an area of use".
std::string with_article(const char *noun);
// A type from its name ("projcs", "geogtran", "coordsys", ...) or short
// name ("pcs"); 0 when unknown.
uint32_t type_from_name(std::string_view name);

// "EPSG:1188" for a catalogue object, empty without a code.
std::string authority_code(const void *obj);
std::string object_name(const void *obj);

}  // namespace ko::cli
