// Conversions between UTF-8 (object names, remarks), UTF-16 (display names,
// plurals) and plain ASCII.  Every conversion writes into a caller buffer of
// `size` units, never splits a character (a UTF-8 sequence or a surrogate
// pair) at the end of the buffer, always terminates, and returns the number
// of units written.  Malformed input becomes U+FFFD, replacing each maximal
// ill-formed subpart as the Unicode Standard (chapter 3, "U+FFFD
// Substitution of Maximal Subparts") recommends.
#include "foundation/internal.h"

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Decodes the character at p; returns the number of bytes it takes (at
// least 1, never past a terminating zero).
int decode_utf8(const unsigned char *p, char32_t &cp) {
  const unsigned char lead = p[0];
  if (lead < 0x80) {
    cp = lead;
    return 1;
  }
  int trail = 0;
  if (lead >= 0xC2 && lead <= 0xDF) {
    trail = 1;
    cp = lead & 0x1Fu;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    trail = 2;
    cp = lead & 0x0Fu;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    trail = 3;
    cp = lead & 0x07u;
  } else {
    cp = kReplacement;
    return 1;
  }
  for (int i = 1; i <= trail; ++i) {
    // The second byte's range excludes overlong forms, surrogates and
    // values above U+10FFFF (Unicode Standard, table 3-7).
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (i == 1) {
      if (lead == 0xE0) low = 0xA0;
      if (lead == 0xED) high = 0x9F;
      if (lead == 0xF0) low = 0x90;
      if (lead == 0xF4) high = 0x8F;
    }
    if (p[i] < low || p[i] > high) {
      cp = kReplacement;
      return i;
    }
    cp = (cp << 6) | (p[i] & 0x3Fu);
  }
  return trail + 1;
}

// Decodes the character at p; returns the number of units it takes.
int decode_utf16(const ko_uchar *p, char32_t &cp) {
  const char32_t unit = p[0];
  if (unit >= 0xD800 && unit <= 0xDBFF && p[1] >= 0xDC00 && p[1] <= 0xDFFF) {
    cp = 0x10000 + ((unit - 0xD800) << 10) + (p[1] - 0xDC00u);
    return 2;
  }
  cp = (unit >= 0xD800 && unit <= 0xDFFF) ? kReplacement : unit;
  return 1;
}

int encode_utf16(char32_t cp, ko_uchar *out) {
  if (cp < 0x10000) {
    out[0] = static_cast<ko_uchar>(cp);
    return 1;
  }
  cp -= 0x10000;
  out[0] = static_cast<ko_uchar>(0xD800 + (cp >> 10));
  out[1] = static_cast<ko_uchar>(0xDC00 + (cp & 0x3FF));
  return 2;
}

int encode_utf8(char32_t cp, char *out) {
  auto byte = [](char32_t v) { return static_cast<char>(static_cast<unsigned char>(v)); };
  if (cp < 0x80) {
    out[0] = byte(cp);
    return 1;
  }
  if (cp < 0x800) {
    out[0] = byte(0xC0 | (cp >> 6));
    out[1] = byte(0x80 | (cp & 0x3F));
    return 2;
  }
  if (cp < 0x10000) {
    out[0] = byte(0xE0 | (cp >> 12));
    out[1] = byte(0x80 | ((cp >> 6) & 0x3F));
    out[2] = byte(0x80 | (cp & 0x3F));
    return 3;
  }
  out[0] = byte(0xF0 | (cp >> 18));
  out[1] = byte(0x80 | ((cp >> 12) & 0x3F));
  out[2] = byte(0x80 | ((cp >> 6) & 0x3F));
  out[3] = byte(0x80 | (cp & 0x3F));
  return 4;
}

// Converts character by character until the source ends or the next
// character no longer fits before the terminator.
template <class In, class Out>
int transcode(const In *src, Out *dst, int size, int (*decode)(const In *, char32_t &),
              int (*encode)(char32_t, Out *)) {
  int len = 0;
  while (*src != 0) {
    char32_t cp = 0;
    const int used = decode(src, cp);
    Out units[4];
    const int n = encode(cp, units);
    if (len + n > size - 1) break;
    for (int i = 0; i < n; ++i) dst[len++] = units[i];
    src += used;
  }
  dst[len] = 0;
  return len;
}

// Appends UTF-16 text after len units already in buf; returns the new length.
int append_uni(ko_uchar *buf, int size, int len, const ko_uchar *text) {
  return len + ko_strncpy_u(buf + len, text, size - len);
}

}  // namespace

extern "C" {

int ko_str_utf8_to_uni(ko_uchar *dst, const char *src, int size) {
  if (dst == nullptr || size <= 0) return 0;
  const auto *from = reinterpret_cast<const unsigned char *>(src != nullptr ? src : "");
  return transcode(from, dst, size, decode_utf8, encode_utf16);
}

int ko_str_uni_to_utf8(char *dst, const ko_uchar *src, int size) {
  if (dst == nullptr || size <= 0) return 0;
  static constexpr ko_uchar kEmpty[1] = {0};
  return transcode(src != nullptr ? src : kEmpty, dst, size, decode_utf16, encode_utf8);
}

// Each byte widens to the code point of the same value (ISO 8859-1).
int ko_str_asc_to_uni(ko_uchar *dst, const char *src, int size) {
  if (dst == nullptr || size <= 0) return 0;
  int len = 0;
  const auto *p = reinterpret_cast<const unsigned char *>(src != nullptr ? src : "");
  for (; p[len] != 0 && len < size - 1; ++len) dst[len] = p[len];
  dst[len] = 0;
  return len;
}

// Units outside ASCII become '?'.
int ko_str_uni_to_asc(char *dst, const ko_uchar *src, int size) {
  if (dst == nullptr || size <= 0) return 0;
  int len = 0;
  if (src != nullptr) {
    for (; src[len] != 0 && len < size - 1; ++len) {
      dst[len] = src[len] < 0x80 ? static_cast<char>(src[len]) : '?';
    }
  }
  dst[len] = '\0';
  return len;
}

int ko_str_names_to_buf(ko_uchar *buf, int size, int flags, const char *name,
                        const ko_uchar *dispname) {
  if (buf == nullptr || size <= 0) return 0;
  const bool has_dispname = dispname != nullptr && dispname[0] != 0;
  const int which = flags & KO_NAMES_BOTH;
  const bool has_name = name != nullptr && name[0] != '\0';
  if (has_dispname && (which == KO_NAMES_DISPNAME || (which == KO_NAMES_BOTH && !has_name))) {
    return ko_strncpy_u(buf, dispname, size);
  }

  int len = ko_str_utf8_to_uni(buf, name, size);
  if (which == KO_NAMES_BOTH && has_dispname && ko_strcmp_u(buf, dispname) != 0) {
    static constexpr ko_uchar kOpen[] = {' ', '(', 0};
    static constexpr ko_uchar kClose[] = {')', 0};
    len = append_uni(buf, size, len, kOpen);
    len = append_uni(buf, size, len, dispname);
    len = append_uni(buf, size, len, kClose);
  }
  return len;
}

}  // extern "C"
