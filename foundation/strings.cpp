// Bounded copies, formatting into fixed buffers and the comparisons used for
// names.  Everything here is independent of the process locale: case folding
// is ASCII, white space is the six C white-space characters.
#include "foundation/foundation.h"
#include "foundation/internal.h"

#include <climits>
#include <cstdio>

namespace {

// Characters that names may spell differently without being different:
// white space and ( ) - / \ _ ("Foot_US", "foot us" and "Foot (US)").
constexpr bool is_name_filler(unsigned char c) {
  return ko::is_space(c) || c == '(' || c == ')' || c == '-' || c == '/' || c == '\\' ||
         c == '_';
}

const unsigned char *skip_fillers(const unsigned char *p) {
  while (is_name_filler(*p)) ++p;
  return p;
}

const unsigned char *bytes(const char *text) {
  return reinterpret_cast<const unsigned char *>(text != nullptr ? text : "");
}

// Case-insensitive comparison of at most n bytes.
int compare_nocase(const char *a, const char *b, long n) {
  const unsigned char *pa = bytes(a);
  const unsigned char *pb = bytes(b);
  for (long i = 0; i < n; ++i) {
    int ca = ko::to_lower(pa[i]);
    int cb = ko::to_lower(pb[i]);
    if (ca != cb || ca == 0) return ca - cb;
  }
  return 0;
}

// Name comparison over at most n significant characters.
int compare_names(const char *a, const char *b, long n) {
  const unsigned char *pa = bytes(a);
  const unsigned char *pb = bytes(b);
  for (long i = 0; i < n; ++i) {
    pa = skip_fillers(pa);
    pb = skip_fillers(pb);
    int ca = ko::to_lower(*pa);
    int cb = ko::to_lower(*pb);
    if (ca != cb || ca == 0) return ca - cb;
    ++pa;
    ++pb;
  }
  return 0;
}

long significant_length(const char *text) {
  long count = 0;
  for (const unsigned char *p = bytes(text); *p != 0; ++p) {
    if (!is_name_filler(*p)) ++count;
  }
  return count;
}

long text_length(const char *text) {
  return text != nullptr ? static_cast<long>(std::strlen(text)) : 0;
}

}  // namespace

extern "C" {

int ko_strncpy(char *dst, const char *src, int size) {
  if (dst == nullptr || size <= 0) return 0;
  const char *from = src != nullptr ? src : "";
  std::size_t len = strnlen(from, static_cast<std::size_t>(size - 1));
  std::memmove(dst, from, len);
  dst[len] = '\0';
  return static_cast<int>(len);
}

int ko_strlen_u(const ko_uchar *text) {
  if (text == nullptr) return 0;
  int len = 0;
  while (text[len] != 0) ++len;
  return len;
}

int ko_strncpy_u(ko_uchar *dst, const ko_uchar *src, int size) {
  if (dst == nullptr || size <= 0) return 0;
  int len = 0;
  if (src != nullptr) {
    while (len < size - 1 && src[len] != 0) ++len;
    std::memmove(dst, src, static_cast<std::size_t>(len) * sizeof(ko_uchar));
  }
  dst[len] = 0;
  return len;
}

int ko_strcmp_u(const ko_uchar *a, const ko_uchar *b) {
  static constexpr ko_uchar kEmpty[1] = {0};
  const ko_uchar *pa = a != nullptr ? a : kEmpty;
  const ko_uchar *pb = b != nullptr ? b : kEmpty;
  while (*pa != 0 && *pa == *pb) {
    ++pa;
    ++pb;
  }
  return static_cast<int>(*pa) - static_cast<int>(*pb);
}

int ko_vsnprintf(char *buf, int size, const char *format, va_list args) {
  if (buf == nullptr || size <= 0) return 0;
  int written = std::vsnprintf(buf, static_cast<std::size_t>(size), format != nullptr ? format : "",
                               args);
  if (written < 0) {
    buf[0] = '\0';
    return 0;
  }
  // A cut text keeps size - 1 characters and reports that length.
  if (written >= size) {
    buf[size - 1] = '\0';
    return size - 1;
  }
  return written;
}

int ko_snprintf(char *buf, int size, const char *format, ...) {
  va_list args;
  va_start(args, format);
  int written = ko_vsnprintf(buf, size, format, args);
  va_end(args);
  return written;
}

int ko_strcmp_i(const char *a, const char *b) { return compare_nocase(a, b, LONG_MAX); }
int ko_strncmp_i(const char *a, const char *b, int n) { return compare_nocase(a, b, n); }
int ko_strncmp_i1(const char *a, const char *b) { return compare_nocase(a, b, text_length(a)); }
int ko_strncmp_i2(const char *a, const char *b) { return compare_nocase(a, b, text_length(b)); }

int ko_strncmp_ci(const char *a, const char *b, int n) { return compare_names(a, b, n); }
int ko_strcmp_ci(const char *a, const char *b) { return compare_names(a, b, LONG_MAX); }
int ko_strncmp_ci1(const char *a, const char *b) {
  return compare_names(a, b, significant_length(a));
}
int ko_strncmp_ci2(const char *a, const char *b) {
  return compare_names(a, b, significant_length(b));
}

char *ko_str_trim_buf(char *text) {
  if (text == nullptr) return text;
  const unsigned char *p = bytes(text);
  std::size_t start = 0;
  while (ko::is_space(p[start])) ++start;
  std::size_t end = std::strlen(text);
  while (end > start && ko::is_space(p[end - 1])) --end;
  std::memmove(text, text + start, end - start);
  text[end - start] = '\0';
  return text;
}

}  // extern "C"
