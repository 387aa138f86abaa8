// ko: the command-line face of the library.  main() hands the arguments
// to one command; each command lives in its own file.
#include "commands.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace ko::cli {
namespace {

constexpr std::string_view kVersionSynopsis[] = {"ko version"};
constexpr std::string_view kErrorSynopsis[] = {"ko error NUMBER"};
constexpr std::string_view kHelpSynopsis[] = {"ko help [--man] [COMMAND]"};

constexpr ExampleDoc kErrorExamples[] = {
    {"What error 334 means:", "ko error 334"},
};

constexpr OptionDoc kHelpOptions[] = {
    {"--man", "Write the whole manual as a troff manual page (the text of ko(1))."},
};

const CommandDoc kVersionDoc = {
    "version", "print the library version", kVersionSynopsis,
    "Writes \"ko\" and the version of the ko library that the tool runs with.", {}, {}, {}, {},
    "0.",
};

const CommandDoc kErrorDoc = {
    "error", "print the message text of a library error number", kErrorSynopsis,
    "Writes \"NUMBER: text\" with the text of the library's error NUMBER in the current "
    "language (see KOLANG), or the number itself when the library has no text for it.",
    {}, {}, {}, kErrorExamples,
    "0 when NUMBER is a number; 2 otherwise.",
};

const CommandDoc kHelpDoc = {
    "help", "print the manual of the tool or of one command", kHelpSynopsis,
    "Writes the manual of COMMAND, as \"ko COMMAND --help\" does, or without COMMAND the "
    "overview of the tool.",
    {}, kHelpOptions, {}, {},
    "0; 2 for an unknown command.",
};

int run_version(int argc, char **argv) {
  const ParsedOptions parsed =
      parse_options(argc, argv, kVersionDoc, {}, "", [](int, const char *) { return false; });
  if (parsed.finished()) return parsed.exit_status();
  if (!parsed.operands.empty()) return usage_error(kVersionDoc, "takes no arguments");
  std::printf("ko %s\n", ko_version());
  return kExitOk;
}

// "ko error <number>": the message text in the current language ("KOLANG").
int run_error(int argc, char **argv) {
  // Negative numbers are operands here, not options.
  if (argc == 2 && std::string_view(argv[1]) != "--help" && std::string_view(argv[1]) != "-h") {
    long number = 0;
    if (!parse_integer(argv[1], INT_MIN, INT_MAX, number)) {
      complain("error: '%s' is not an error number", argv[1]);
      return kExitUsage;
    }
    char text[KO_ERR_TEXT_SIZE];
    ko_err_num_to_str(text, static_cast<int>(number));
    std::printf("%ld: %s\n", number, text);
    return kExitOk;
  }
  const ParsedOptions parsed =
      parse_options(argc, argv, kErrorDoc, {}, "", [](int, const char *) { return false; });
  if (parsed.finished()) return parsed.exit_status();
  return usage_error(kErrorDoc, "expects one error number");
}

const Command *find_command(std::string_view name) {
  for (const Command &command : commands())
    if (command.doc->name == name) return &command;
  return nullptr;
}

constexpr option kHelpLongOptions[] = {{"man", no_argument, nullptr, 'm'}};

int run_help(int argc, char **argv) {
  bool man = false;
  const ParsedOptions parsed =
      parse_options(argc, argv, kHelpDoc, kHelpLongOptions, "", [&](int code, const char *) {
        man = code == 'm';
        return man;
      });
  if (parsed.finished()) return parsed.exit_status();
  if (parsed.operands.size() > 1) return usage_error(kHelpDoc, "expects at most one command");
  if (man) {
    print_man_page(stdout);
    return kExitOk;
  }
  if (parsed.operands.empty()) {
    print_tool_help(stdout);
    return kExitOk;
  }
  const Command *command = find_command(parsed.operands.front());
  if (command == nullptr) {
    const std::string name(parsed.operands.front());
    return usage_error(kHelpDoc, "unknown command '%s'", name.c_str());
  }
  print_command_help(*command->doc, stdout);
  return kExitOk;
}

constexpr Command kCommands[] = {
    {&kInfoDoc, run_info},         {&kListDoc, run_list},   {&kProjectDoc, run_project},
    {&kTransformDoc, run_transform}, {&kErrorDoc, run_error}, {&kVersionDoc, run_version},
    {&kHelpDoc, run_help},
};

}  // namespace

std::span<const Command> commands() { return kCommands; }

}  // namespace ko::cli

int main(int argc, char **argv) {
  using namespace ko::cli;
  if (argc < 2) {
    std::fputs("usage: ko COMMAND [options] [arguments]; 'ko help' lists the commands\n",
               stderr);
    return kExitUsage;
  }
  const std::string_view name = argv[1];
  if (name == "--help" || name == "-h") {
    print_tool_help(stdout);
    return kExitOk;
  }
  if (name == "--version") return run_version(1, argv + 1);
  const Command *command = find_command(name);
  if (command == nullptr) {
    complain("unknown command '%s'; 'ko help' lists the commands", argv[1]);
    return kExitUsage;
  }
  const int status = command->run(argc - 1, argv + 1);
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    complain("cannot write the output");
    return kExitUsage;
  }
  return status;
}
