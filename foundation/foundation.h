// Internal interfaces between the foundation files (errors, log, strings,
// number text).  Not installed; other subsystems use the public ko_ calls.
#pragma once

#include "ko.h"

#include <cstdarg>

namespace ko {

// Offers a finished report to the message callback and to the log.
void dispatch_report(const ko_err &report);

// Renders one value of the given type letter ("s", "d", "x", "f") into buf
// (256 bytes); other letters leave buf empty.
void render_value(char *buf, const char *type, va_list args);

// ASCII classification that ignores the process locale.
constexpr bool is_space(unsigned char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr unsigned char to_lower(unsigned char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<unsigned char>(c - 'A' + 'a') : c;
}

}  // namespace ko
