// Small text scanners used by the readers of configuration and catalogue
// text: splitting at a delimiter, wildcard matching and escape sequences.
#include "foundation/foundation.h"
#include "foundation/internal.h"

namespace {

char *trim_token(char *token) {
  while (ko::is_space(static_cast<unsigned char>(*token))) ++token;
  std::size_t len = std::strlen(token);
  while (len > 0 && ko::is_space(static_cast<unsigned char>(token[len - 1]))) token[--len] = '\0';
  return token;
}

// Steps over one character: a byte, or a whole UTF-8 sequence.
const unsigned char *next_char(const unsigned char *p) {
  ++p;
  while ((*p & 0xC0u) == 0x80u) ++p;
  return p;
}

bool same_byte(unsigned char a, unsigned char b, bool ignore_case) {
  return ignore_case ? ko::to_lower(a) == ko::to_lower(b) : a == b;
}

// Greedy matching with a single backtrack point: on a mismatch the last '*'
// takes one more character.  Linear in practice, never recursive.
bool wildcard_match(const unsigned char *pattern, const unsigned char *text, bool ignore_case) {
  const unsigned char *after_star = nullptr;
  const unsigned char *star_text = nullptr;
  while (*text != 0) {
    if (*pattern == '*') {
      after_star = ++pattern;
      star_text = text;
    } else if (*pattern == '?') {
      ++pattern;
      text = next_char(text);
    } else if (*pattern != 0 && same_byte(*pattern, *text, ignore_case)) {
      ++pattern;
      ++text;
    } else if (after_star != nullptr) {
      pattern = after_star;
      star_text = next_char(star_text);
      text = star_text;
    } else {
      return false;
    }
  }
  while (*pattern == '*') ++pattern;
  return *pattern == 0;
}

char unescaped(char c) {
  switch (c) {
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case '\\':
    case '"':
    case '\'':
      return c;
    default:
      return '\0';  // not an escape: keep the backslash and the character
  }
}

}  // namespace

extern "C" {

int ko_str_tokenize(char *text, char delimiter, char **tokens, int max) {
  if (text == nullptr || tokens == nullptr || max <= 0 || text[0] == '\0') return 0;
  int count = 0;
  char *p = text;
  for (;;) {
    char *delim = (count + 1 < max && delimiter != '\0') ? std::strchr(p, delimiter) : nullptr;
    if (delim != nullptr) *delim = '\0';
    tokens[count++] = trim_token(p);
    if (delim == nullptr) break;
    p = delim + 1;
  }
  return count;
}

int ko_str_wildcard_match(const char *pattern, const char *text, int ignore_case) {
  if (pattern == nullptr || text == nullptr) return 0;
  return wildcard_match(reinterpret_cast<const unsigned char *>(pattern),
                        reinterpret_cast<const unsigned char *>(text), ignore_case != 0)
             ? 1
             : 0;
}

int ko_str_unescape(char *text) {
  if (text == nullptr) return 0;
  char *out = text;
  for (const char *in = text; *in != '\0'; ++in) {
    char resolved = in[0] == '\\' ? unescaped(in[1]) : '\0';
    if (resolved != '\0') {
      *out++ = resolved;
      ++in;
    } else {
      *out++ = *in;
    }
  }
  *out = '\0';
  return static_cast<int>(out - text);
}

}  // extern "C"
