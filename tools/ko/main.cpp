// ko: the command-line face of the library.
#include "ko.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

constexpr const char *kUsage =
    "usage: ko <command> [arguments]\n"
    "\n"
    "commands:\n"
    "  version            print the library version\n"
    "  error <number>     print the message text of an error number\n"
    "  help               print this text\n";

// "ko error <number>": the message text in the current language ("KOLANG").
int print_error_text(const char *arg) {
  char *end = nullptr;
  errno = 0;
  long number = std::strtol(arg, &end, 10);
  if (end == arg || *end != '\0' || errno == ERANGE || number < INT_MIN || number > INT_MAX) {
    std::fprintf(stderr, "ko: error: '%s' is not an error number\n", arg);
    return 2;
  }
  char text[KO_ERR_TEXT_SIZE];
  ko_err_num_to_str(text, static_cast<int>(number));
  std::printf("%ld: %s\n", number, text);
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  std::string_view cmd = argv[1];
  if (cmd == "version" || cmd == "--version") {
    std::printf("ko %s\n", ko_version());
    return 0;
  }
  if (cmd == "error") {
    if (argc != 3) {
      std::fputs(kUsage, stderr);
      return 2;
    }
    return print_error_text(argv[2]);
  }
  if (cmd == "help" || cmd == "--help" || cmd == "-h") {
    std::fputs(kUsage, stdout);
    return 0;
  }
  std::fprintf(stderr, "ko: unknown command '%s'\n%s", argv[1], kUsage);
  return 2;
}
