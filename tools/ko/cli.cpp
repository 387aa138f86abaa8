// Diagnostics, option parsing and number text for the ko tool.
#include "cli.h"

#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstring>

namespace ko::cli {

void complain(const char *format, ...) {
  std::fputs("ko: ", stderr);
  va_list args;
  va_start(args, format);
  std::vfprintf(stderr, format, args);
  va_end(args);
  std::fputc('\n', stderr);
}

void report(const ko_err &err) {
  if (err.severity == KO_SEV_NONE) return;
  char text[KO_ERR_TEXT_SIZE];
  ko_err_num_to_str(text, err.number);
  const char *kind = err.severity >= KO_SEV_ERROR ? "error" : "warning";
  // The message holds the report's arguments, sometimes after the text.
  const char *message = err.message;
  if (std::strncmp(message, text, std::strlen(text)) == 0) {
    message += std::strlen(text);
    while (*message == ':' || *message == ' ') ++message;
  }
  std::fprintf(stderr, "ko: %s %d: %s", kind, err.number, text);
  if (*message != '\0') std::fprintf(stderr, ": %s", message);
  if (err.source[0] != '\0') std::fprintf(stderr, " (%s)", err.source);
  std::fputc('\n', stderr);
}

int usage_error(const CommandDoc &doc, const char *format, ...) {
  std::fprintf(stderr, "ko %.*s: ", static_cast<int>(doc.name.size()), doc.name.data());
  va_list args;
  va_start(args, format);
  std::vfprintf(stderr, format, args);
  va_end(args);
  std::fprintf(stderr, "\nTry 'ko %.*s --help'.\n", static_cast<int>(doc.name.size()),
               doc.name.data());
  return kExitUsage;
}

ParsedOptions parse_options(int argc, char **argv, const CommandDoc &doc,
                            std::span<const option> long_options, const char *short_options,
                            const OptionHandler &handle) {
  std::vector<option> table(long_options.begin(), long_options.end());
  table.push_back({"help", no_argument, nullptr, 'h'});
  table.push_back({nullptr, 0, nullptr, 0});
  // A leading ':' reports a missing argument as ':'; 'h' is always known.
  std::string shorts = std::string(":") + short_options + "h";

  ParsedOptions parsed{ParsedOptions::kRun, {}};
  optind = 0;  // glibc: start a fresh scan (the tool parses once per command)
  opterr = 0;
  for (;;) {
    const int previous = optind;
    const int code = getopt_long(argc, argv, shorts.c_str(), table.data(), nullptr);
    if (code == -1) break;
    if (code == 'h') {
      print_command_help(doc, stdout);
      parsed.outcome = ParsedOptions::kHelpShown;
      return parsed;
    }
    // optind has moved past the offending word; previous points at it
    // unless several short options were grouped in one word.
    const char *word = argv[optind > previous ? optind - 1 : previous];
    if (code == '?') {
      if (optopt != 0)
        usage_error(doc, "unknown option '-%c'", optopt);
      else
        usage_error(doc, "unknown option '%s'", word);
      parsed.outcome = ParsedOptions::kBad;
      return parsed;
    }
    if (code == ':') {
      usage_error(doc, "option '%s' needs a value", word);
      parsed.outcome = ParsedOptions::kBad;
      return parsed;
    }
    if (!handle(code, optarg)) {
      parsed.outcome = ParsedOptions::kBad;
      return parsed;
    }
  }
  for (int i = optind; i < argc; ++i) parsed.operands.emplace_back(argv[i]);
  return parsed;
}

bool parse_number(std::string_view text, double &out) {
  if (text.empty()) return false;
  const char *first = text.data();
  const char *last = first + text.size();
  if (*first == '+') ++first;  // from_chars takes no plus sign
  double value = 0.0;
  const auto [end, ec] = std::from_chars(first, last, value);
  if (ec != std::errc() || end != last || !std::isfinite(value)) return false;
  out = value;
  return true;
}

bool parse_integer(std::string_view text, long low, long high, long &out) {
  long value = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || ec != std::errc() || end != text.data() + text.size()) return false;
  if (value < low || value > high) return false;
  out = value;
  return true;
}

void append_item(std::string &out, std::string_view separator, std::string_view item) {
  if (!out.empty()) out += separator;
  out += item;
}

void append_fixed(std::string &out, double value, int decimals) {
  char buf[400];  // fixed notation of the largest double with 17 decimals fits
  const auto [end, ec] =
      std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed, decimals);
  if (ec != std::errc()) {
    out += "*";
    return;
  }
  // A value that rounds to zero is written without a minus sign.
  std::string_view text(buf, static_cast<size_t>(end - buf));
  if (text.front() == '-' && text.find_first_not_of("-0.") == std::string_view::npos)
    text.remove_prefix(1);
  out += text;
}

std::string object_name(const void *obj) {
  char buf[KO_NAME_SIZE] = "";
  return ko_object_name(obj, buf);
}

std::string authority_code(const void *obj) {
  const int32_t code = ko_object_code(obj);
  if (code <= 0) return {};
  const char *auth = ko_header_get_auth_name(obj);
  std::string text = (auth != nullptr && *auth != '\0') ? auth : "";
  if (text.empty()) {
    char buf[KO_NAME_SIZE] = "";
    ko_authority_authname(ko_object_authority_const(obj), buf);
    text = buf;
  }
  if (!text.empty()) text += ':';
  return text + std::to_string(code);
}

}  // namespace ko::cli
