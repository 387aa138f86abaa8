// Error reporting: the caller-owned ko_err record, the message tables and the
// reporting functions.  Every report ends in ko_err_str, which builds the
// complete report, offers it to the callback and the log (log.cpp) and keeps
// it in the caller's record when it is more severe than what is there.
#include "foundation/foundation.h"
#include "foundation/internal.h"

#include <atomic>
#include <cstdio>

namespace {

constexpr int kTextSize = KO_ERR_TEXT_SIZE;

// The current language; null until the first lookup or ko_err_language_set.
std::atomic<const ko_errtbl *> g_language{nullptr};

const ko_errtbl *current_language() {
  const ko_errtbl *table = g_language.load(std::memory_order_acquire);
  if (table == nullptr) table = ko_err_language_set(ko_getenv("KOLANG"));
  return table;
}

const char *lookup_text(const ko_errtbl *table, int number) {
  if (table == nullptr || table->entries == nullptr) return nullptr;
  for (const ko_errtbl_entry *e = table->entries; e->number >= 0; ++e) {
    if (e->number == number) return e->text;
  }
  return nullptr;
}

}  // namespace

namespace ko {

void render_value(char *buf, const char *type, va_list args) {
  buf[0] = '\0';
  if (type == nullptr) return;
  switch (type[0]) {
    case 's': {
      const char *text = va_arg(args, const char *);
      ko_strncpy(buf, text != nullptr ? text : "", kTextSize);
      break;
    }
    case 'd':
      std::snprintf(buf, kTextSize, "%d", va_arg(args, int));
      break;
    case 'x':
      std::snprintf(buf, kTextSize, "%x", va_arg(args, unsigned));
      break;
    case 'f':
      ko_dtoa(buf, 16, va_arg(args, double));
      break;
    default:
      break;
  }
}

}  // namespace ko

extern "C" {

void ko_err_clear(ko_err *err) {
  if (err == nullptr) return;
  err->severity = 0;
  err->category = 0;
  err->number = 0;
  err->source[0] = '\0';
  err->message[0] = '\0';
}

void ko_err_str(ko_err *err, int severity, int category, int number, const char *source,
                const char *message) {
  ko_err report{};
  report.severity = severity;
  report.category = category;
  report.number = number;
  ko::copy_field(report.source, source);
  if (message != nullptr && message[0] != '\0') {
    ko::copy_field(report.message, message);
  } else {
    ko_err_num_to_str(report.message, number);
  }

  ko::dispatch_report(report);

  // The first report of the highest severity wins: equal or lower severities
  // never overwrite what the record holds.
  if (err != nullptr && err->severity < severity) *err = report;
}

void ko_err_set(ko_err *err, int severity, int category, int number, const char *source) {
  ko_err_str(err, severity, category, number, source, nullptr);
}

void ko_err_arg(ko_err *err, int severity, int category, int number, const char *source,
                const char *type, ...) {
  char message[kTextSize];
  va_list args;
  va_start(args, type);
  ko::render_value(message, type, args);
  va_end(args);
  ko_err_str(err, severity, category, number, source, message);
}

void ko_err_fmt(ko_err *err, int severity, int category, int number, const char *source,
                const char *format, ...) {
  va_list args;
  va_start(args, format);
  ko_err_var(err, severity, category, number, source, format, args);
  va_end(args);
}

void ko_err_var(ko_err *err, int severity, int category, int number, const char *source,
                const char *format, va_list args) {
  // "<table text>: <formatted text>", cut to the record's message field.
  char message[kTextSize];
  ko_err_num_to_str(message, number);
  int len = static_cast<int>(std::strlen(message));
  len += ko_strncpy(message + len, ": ", kTextSize - len);
  ko_vsnprintf(message + len, kTextSize - len, format != nullptr ? format : "", args);
  ko_err_str(err, severity, category, number, source, message);
}

char *ko_err_buf(char *buf, int /*number*/, const char *type, ...) {
  if (buf == nullptr) return buf;
  va_list args;
  va_start(args, type);
  ko::render_value(buf, type, args);
  va_end(args);
  return buf;
}

char *ko_err_num_to_str(char *buf, int number) {
  if (buf == nullptr) return buf;
  const char *text = lookup_text(current_language(), number);
  if (text != nullptr) {
    ko_strncpy(buf, text, kTextSize);
  } else {
    std::snprintf(buf, kTextSize, "%d", number);
  }
  return buf;
}

const ko_errtbl *ko_err_language_set(const char *name) {
  const ko_errtbl *chosen = ko_msg_tbl_list[0];
  if (name != nullptr && name[0] != '\0') {
    // "en", "EN", "en_US" and "en-GB" all choose English: the comparison
    // covers only as many significant characters as the table's name has.
    for (const ko_errtbl *const *t = ko_msg_tbl_list; *t != nullptr; ++t) {
      if (ko_strncmp_ci2(name, (*t)->language) == 0) {
        chosen = *t;
        break;
      }
    }
  }
  g_language.store(chosen, std::memory_order_release);
  return chosen;
}

char *ko_err_language_get(char *buf) {
  const ko_errtbl *table = current_language();
  if (buf != nullptr) ko_strncpy(buf, table->language, static_cast<int>(sizeof table->language));
  return buf;
}

}  // extern "C"
