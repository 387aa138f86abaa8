// Numbers as text.  Every number the library writes into WKT and other text
// passes through ko_dtoa, so its digit rules fix what the text looks like:
// the shortest form that shows the requested significant digits, always with
// a decimal point and a digit after it unless in exponent form, and with the
// representation noise of 16 and 17 digit requests trimmed.  Both directions
// use "." whatever the process locale, without ever changing the locale.
#include "foundation/foundation.h"
#include "foundation/internal.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kMaxDigits = 17;      // enough to tell every double apart
constexpr int kScratchSize = 128;   // holds every intermediate text below
constexpr int kMaxFixedWidth = 64;  // longer fixed-point texts use %g
constexpr int kStrtodCopy = 128;    // ko_strtod reads at most 127 characters

// The mantissa digits and decimal exponent of a "%e" text.
struct Scientific {
  char digits[kScratchSize] = {};
  int count = 0;
  int exponent = 0;
};

Scientific split_scientific(const char *text) {
  Scientific s;
  const char *p = text;
  for (; *p != '\0' && *p != 'e' && *p != 'E'; ++p) {
    if (*p >= '0' && *p <= '9') s.digits[s.count++] = *p;
  }
  if (*p != '\0') s.exponent = static_cast<int>(std::strtol(p + 1, nullptr, 10));
  return s;
}

// A 16 or 17 digit mantissa whose two digits before the last are "00" or
// "99" carries binary representation noise in its last digit (0.3048 gives
// 3.048000000000000e-01); one digit less is the number that was meant.
bool ends_in_noise(const Scientific &s) {
  if (s.count < 3) return false;
  char a = s.digits[s.count - 3];
  char b = s.digits[s.count - 2];
  return (a == '0' && b == '0') || (a == '9' && b == '9');
}

void format(char *text, const char *conversion, int width, int precision, double value) {
  std::snprintf(text, kScratchSize, conversion, width, precision, value);
}

// Removes the zeros after the last significant decimal and keeps one digit
// after the decimal character ("6378137.000" -> "6378137.0").
void trim_decimals(char *text, char decimal) {
  if (std::strchr(text, decimal) == nullptr) return;
  std::size_t len = std::strlen(text);
  while (len > 0 && text[len - 1] == '0') text[--len] = '\0';
  if (len > 0 && text[len - 1] == decimal) {
    text[len] = '0';
    text[len + 1] = '\0';
  }
}

void append_decimal_zero(char *text, char decimal) {
  if (std::strchr(text, decimal) != nullptr) return;
  std::size_t len = std::strlen(text);
  text[len] = decimal;
  text[len + 1] = '0';
  text[len + 2] = '\0';
}

// |value| < 1: fixed point while it stays short, else exponent form.
void format_small(char *text, int digits, int exponent, int decimals, double value,
                  char decimal) {
  constexpr int kMaxFixedLength = 26;
  if (decimals + 3 < kMaxFixedWidth) {
    format(text, "%*.*f", decimals + 3, decimals, value);
    trim_decimals(text, decimal);
    if (exponent >= -9 && std::strlen(text) < kMaxFixedLength) return;
  }
  format(text, "%*.*g", digits + 8, digits, value);
}

void format_large(char *text, int digits, int decimals, double value, char decimal) {
  format(text, "%*.*f", digits + 2, decimals, value);
  append_decimal_zero(text, decimal);
  trim_decimals(text, decimal);
}

}  // namespace

extern "C" {

char ko_get_decimal_point_char(void) {
  char probe[16];
  int len = std::snprintf(probe, sizeof probe, "%3.1f", 1.0);
  return len == 3 ? probe[1] : '.';
}

char *ko_dtoa_ld(char *buf, int digits, double value) {
  if (buf == nullptr) return buf;
  if (std::isinf(value)) return std::strcpy(buf, "Inf");
  if (std::isnan(value)) return std::strcpy(buf, "NaN");

  int d = digits < 1 ? 1 : (digits > kMaxDigits ? kMaxDigits : digits);
  const bool full_precision = d >= 16;
  const int f = full_precision ? 1 : 0;

  char text[kScratchSize];
  format(text, "%*.*e", d + 8 - f, d - f, value);
  const Scientific sci = split_scientific(text);
  const int e = sci.exponent;
  if (full_precision && e < 12 && ends_in_noise(sci)) --d;

  const int decimals = d - 1 - e;  // shows d significant digits
  const char decimal = ko_get_decimal_point_char();
  if (e < 0) {
    format_small(text, d, e, decimals, value, decimal);
  } else if (decimals >= 0) {
    format_large(text, d, decimals, value, decimal);
  } else {
    format(text, "%*.*g", d + 8, d, value);
  }
  ko_str_trim_buf(text);
  return std::strcpy(buf, text);
}

char *ko_dtoa(char *buf, int digits, double value) {
  if (ko_dtoa_ld(buf, digits, value) == nullptr) return buf;
  const char decimal = ko_get_decimal_point_char();
  if (decimal != '.') {
    char *p = std::strchr(buf, decimal);
    if (p != nullptr) *p = '.';
  }
  return buf;
}

char *ko_enforce_dot_decimal(char *text) {
  if (text == nullptr) return text;
  const char decimal = ko_get_decimal_point_char();
  if (decimal == '.') return text;
  for (char *p = text; *p != '\0'; ++p) {
    if (*p == decimal) *p = '.';
  }
  return text;
}

double ko_strtod(const char *text, char **end) {
  if (end != nullptr) *end = nullptr;
  if (text == nullptr || text[0] == '\0') return 0.0;

  const char decimal = ko_get_decimal_point_char();
  if (decimal == '.') return std::strtod(text, end);

  // Read a copy in which "." is the locale's decimal character.  A text that
  // already uses the locale's character is not in the library's convention
  // and is refused.
  char copy[kStrtodCopy];
  ko_strncpy(copy, text, kStrtodCopy);
  if (std::strchr(copy, decimal) != nullptr) return 0.0;
  for (char *p = copy; *p != '\0'; ++p) {
    if (*p == '.') *p = decimal;
  }
  char *stop = nullptr;
  double value = std::strtod(copy, &stop);
  if (end != nullptr) *end = const_cast<char *>(text) + (stop - copy);
  return value;
}

}  // extern "C"
