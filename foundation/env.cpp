// The library's window on its environment: environment variables, the debug
// output, files opened by path and the data directory that holds grid files.
#include "foundation/foundation.h"
#include "foundation/internal.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace {

constexpr int kPathSize = 4096;  // PATH_MAX on Linux

struct DataDirectory {
  std::mutex lock;
  char path[kPathSize] = {};  // empty: not set, fall back to "KODATA"
};

DataDirectory &data_directory() {
  static DataDirectory dir;
  return dir;
}

bool is_directory(const char *path) {
  struct stat info {};
  return ::stat(path, &info) == 0 && S_ISDIR(info.st_mode);
}

}  // namespace

extern "C" {

const char *ko_getenv(const char *name) {
  if (name == nullptr || name[0] == '\0') return nullptr;
  return std::getenv(name);
}

void ko_odprintf(const char *format, ...) {
  if (format == nullptr) return;
  char line[4096];
  va_list args;
  va_start(args, format);
  int len = ko_vsnprintf(line, static_cast<int>(sizeof line), format, args);
  va_end(args);
  // One write per line, so that lines from several threads do not mix.
  const bool has_newline = len > 0 && line[len - 1] == '\n';
  std::fprintf(stderr, has_newline ? "%s" : "%s\n", line);
}

void *ko_path_fopen(const char *path, const char *mode) {
  if (path == nullptr || path[0] == '\0' || mode == nullptr || mode[0] == '\0') return nullptr;
  // Close-on-exec ("e"), so that files the library holds never leak into
  // programs that the caller starts.
  char mode_e[16];
  ko_snprintf(mode_e, static_cast<int>(sizeof mode_e), "%se", mode);
  return std::fopen(path, mode_e);
}

char *ko_datadir_get(char *buf, int size) {
  if (buf == nullptr || size <= 0) return buf;
  DataDirectory &dir = data_directory();
  std::lock_guard<std::mutex> hold(dir.lock);
  if (dir.path[0] != '\0') {
    ko_strncpy(buf, dir.path, size);
  } else {
    ko_strncpy(buf, ko_getenv("KODATA"), size);
  }
  return buf;
}

void ko_datadir_set(const char *path) {
  static constexpr const char *kSource = "ko_datadir_set";
  DataDirectory &dir = data_directory();
  if (path == nullptr || path[0] == '\0') {
    std::lock_guard<std::mutex> hold(dir.lock);
    dir.path[0] = '\0';
    return;
  }
  if (std::strlen(path) >= kPathSize) {
    ko_err_arg(nullptr, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 126, kSource, "s", path);
    return;
  }
  if (!is_directory(path)) {
    ko_err_arg(nullptr, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 127, kSource, "s", path);
    return;
  }
  std::lock_guard<std::mutex> hold(dir.lock);
  ko_strncpy(dir.path, path, kPathSize);
}

}  // extern "C"
