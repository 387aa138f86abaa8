// Where reports go besides the caller's record: the process-wide message
// callback, filtered by its severity and category masks, and the log chosen
// by the environment ("KOLOGFILE", "KOLOGLEVEL", "KOLOGCATEGORY"), read once
// at the first report of the process.
//
// The settings are plain process state.  They are kept in atomics so that
// concurrent reports read whole values, but installing a callback while
// other threads report is not otherwise synchronised.
#include "foundation/foundation.h"
#include "foundation/internal.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <mutex>

namespace {

// ---------------------------------------------------------------- callback

std::atomic<ko_msg_callback> g_callback{nullptr};
std::atomic<void *> g_userdata{nullptr};
std::atomic<int> g_severity_mask{0};
std::atomic<int> g_category_mask{0};

// A mask of -1 keeps the stored value; any other value is stored while a
// callback is installed and clears the mask when the callback is removed.
void store_mask(std::atomic<int> &mask, int value, bool installing) {
  if (value != -1) mask.store(installing ? value : 0, std::memory_order_relaxed);
}

void offer_to_callback(const ko_err &report) {
  ko_msg_callback callback = g_callback.load(std::memory_order_acquire);
  if (callback == nullptr) return;
  if ((report.severity & g_severity_mask.load(std::memory_order_relaxed)) == 0) return;
  if ((report.category & g_category_mask.load(std::memory_order_relaxed)) == 0) return;
  callback(g_userdata.load(std::memory_order_relaxed), &report);
}

// --------------------------------------------------------------------- log

constexpr int kDestinationSize = 4096;

struct LogSettings {
  int severity_mask = KO_SEV_INFO | KO_SEV_WARNING | KO_SEV_ERROR;
  int category_mask = 127;  // all seven categories
  char destination[kDestinationSize] = {};
};

std::once_flag g_log_env_once;
LogSettings g_log;
// Cleared for good when the log file cannot be opened: no retry.
std::atomic<bool> g_log_enabled{false};

// Decimal value of an environment variable; false when unset or empty.
bool env_int(const char *name, int &value) {
  const char *text = ko_getenv(name);
  if (text == nullptr || text[0] == '\0') return false;
  value = static_cast<int>(std::strtol(text, nullptr, 10));
  return true;
}

void read_log_environment() {
  env_int("KOLOGCATEGORY", g_log.category_mask);
  env_int("KOLOGLEVEL", g_log.severity_mask);
  const char *destination = ko_getenv("KOLOGFILE");
  if (destination != nullptr && destination[0] != '\0') {
    ko::copy_field(g_log.destination, destination);
    g_log_enabled.store(true, std::memory_order_release);
  }
}

const char *severity_word(int severity) {
  switch (severity) {
    case KO_SEV_INFO:
      return "info";
    case KO_SEV_WARNING:
      return "warning";
    case KO_SEV_ERROR:
      return "error";
    default:
      return "?";
  }
}

// "KO: <local time>: <source> [<severity>] <table text>: <message>"
void format_log_line(char *line, int size, const ko_err &report) {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char stamp[64];
  std::snprintf(stamp, sizeof stamp, "%4d-%02d-%02d %02d.%02d.%02d", local.tm_year + 1900,
                local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
  char text[KO_ERR_TEXT_SIZE];
  ko_err_num_to_str(text, report.number);
  ko_snprintf(line, size, "KO: %s: %s [%s] %s: %s", stamp, report.source,
              severity_word(report.severity), text, report.message);
}

void write_log_line(const char *line) {
  const char *destination = g_log.destination;
  if (destination[0] == '!') {
    ko_odprintf("%s\n", line);
  } else if (destination[0] == '-') {
    std::fprintf(stderr, "%s\n", line);
  } else {
    // Opened and closed for each line, so that the file can be watched,
    // moved or removed while the process runs.
    auto *file = static_cast<std::FILE *>(ko_path_fopen(destination, "a"));
    if (file == nullptr) {
      g_log_enabled.store(false, std::memory_order_release);
      return;
    }
    std::fprintf(file, "%s\n", line);
    std::fclose(file);
  }
}

void offer_to_log(const ko_err &report) {
  std::call_once(g_log_env_once, read_log_environment);
  if (!g_log_enabled.load(std::memory_order_acquire)) return;
  if ((report.category & g_log.category_mask) == 0) return;
  if ((report.severity & g_log.severity_mask) == 0) return;
  // Time, source, severity, table text and message fit well within this.
  char line[1024];
  format_log_line(line, static_cast<int>(sizeof line), report);
  write_log_line(line);
}

}  // namespace

namespace ko {

void dispatch_report(const ko_err &report) {
  offer_to_callback(report);
  offer_to_log(report);
}

}  // namespace ko

extern "C" {

void ko_msg_setrtn(void *userdata, int severity_mask, int category_mask,
                   ko_msg_callback callback) {
  const bool installing = callback != nullptr;
  g_userdata.store(installing ? userdata : nullptr, std::memory_order_relaxed);
  store_mask(g_severity_mask, severity_mask, installing);
  store_mask(g_category_mask, category_mask, installing);
  g_callback.store(callback, std::memory_order_release);
}

void ko_msg_getrtn(void **userdata, int *severity_mask, int *category_mask,
                   ko_msg_callback *callback) {
  if (userdata != nullptr) *userdata = g_userdata.load(std::memory_order_relaxed);
  if (severity_mask != nullptr) *severity_mask = g_severity_mask.load(std::memory_order_relaxed);
  if (category_mask != nullptr) *category_mask = g_category_mask.load(std::memory_order_relaxed);
  if (callback != nullptr) *callback = g_callback.load(std::memory_order_acquire);
}

}  // extern "C"
