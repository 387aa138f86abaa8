// ko: the command-line face of the library.
#include "ko.h"

#include <cstdio>
#include <string_view>

namespace {

constexpr const char *kUsage =
    "usage: ko <command> [arguments]\n"
    "\n"
    "commands:\n"
    "  version            print the library version\n"
    "  help               print this text\n";

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
  if (cmd == "help" || cmd == "--help" || cmd == "-h") {
    std::fputs(kUsage, stdout);
    return 0;
  }
  std::fprintf(stderr, "ko: unknown command '%s'\n%s", argv[1], kUsage);
  return 2;
}
