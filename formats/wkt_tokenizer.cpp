// WKT1 tokenizer, pretty-printer and keyword helpers.
//
// Tokenizing runs in two passes over a private copy of the text.  The
// first pass normalizes: round brackets become square ones, white space
// outside quotes goes away, every quoted string is re-quoted with double
// quotes (a double quote inside becomes a doubled one), and the bracket and
// comma structure is checked.  The second pass splits the normalized text
// in place into tokens, each with the depth of the bracket it sits in.
#include "foundation/foundation.h"
#include "formats/text_out.h"
#include "foundation/internal.h"

#include <cstdio>
#include <cstring>

namespace {

using ko::is_space;

constexpr bool is_letter(unsigned char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr char to_upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

// Records a failure in the list's error slot; message is optional.
void fail(ko_wkt_tokens &list, int severity, int number, const char *message) {
  list.count = 0;
  list.err_severity = severity;
  list.err_number = number;
  ko_strncpy(list.err_message, message != nullptr ? message : "", KO_ERR_TEXT_SIZE);
}

// Case-insensitive search of needle in hay; null when absent.
const char *find_ci(const char *hay, const char *needle) {
  std::size_t n = std::strlen(needle);
  if (n == 0) return nullptr;
  for (; *hay != '\0'; ++hay)
    if (ko_strncmp_i(hay, needle, static_cast<int>(n)) == 0) return hay;
  return nullptr;
}

constexpr bool may_follow_keyword(unsigned char c) {
  return is_letter(c) || c == '_' || c == '-' || is_space(c);
}

// The first occurrence of keyword that opens a node: after the keyword
// (and any further letters, '_', '-' and white space) comes '[' or '('.
// A failed occurrence is followed by a run of such characters up to q; an
// occurrence starting inside that run would end at the same q, so the
// search goes on from q and stays linear in the text's length.
const char *find_node_keyword(const char *text, const char *keyword) {
  std::size_t n = std::strlen(keyword);
  for (const char *p = find_ci(text, keyword); p != nullptr;) {
    const char *q = p + n;
    while (may_follow_keyword(static_cast<unsigned char>(*q))) ++q;
    if (*q == '[' || *q == '(') return p;
    if (*q == '\0') return nullptr;
    p = find_ci(q, keyword);
  }
  return nullptr;
}

// What the normalizing pass copied last; decides what may come next.
enum class Prev { kStart, kWord, kOpen, kComma, kClose, kQuoted };

// First pass: copies text into list.text as described at the top of the
// file.  Returns false after recording an error.
class Normalizer {
 public:
  explicit Normalizer(ko_wkt_tokens &list) : list_(list) {}

  bool run(const char *p) {
    while (*p != '\0' && !done_) {
      unsigned char c = static_cast<unsigned char>(*p);
      if (is_space(c)) {
        ++p;
        continue;
      }
      if (c == '"' || c == '\'') {
        if (prev_ != Prev::kOpen && prev_ != Prev::kComma) return syntax(458);
        p = copy_quoted(p);
        if (p == nullptr) return false;
        continue;
      }
      if (!copy_plain(c == '(' ? '[' : c == ')' ? ']' : static_cast<char>(c))) return false;
      ++p;
    }
    list_.text[len_] = '\0';
    if (depth_ > 0) {
      char count[16];
      std::snprintf(count, sizeof count, "%d", depth_);
      list_.err_severity = KO_SEV_WARNING;
      list_.err_number = 464;
      ko_strncpy(list_.err_message, count, KO_ERR_TEXT_SIZE);
    }
    return true;
  }

 private:
  bool syntax(int number) {
    fail(list_, KO_SEV_ERROR, number, nullptr);
    return false;
  }

  bool emit(char c) {
    if (len_ >= KO_WKT_MAX_CHARS) {
      fail(list_, KO_SEV_ERROR, 467, "4095");
      return false;
    }
    list_.text[len_++] = c;
    return true;
  }

  // A character outside quotes, brackets already squared.
  bool copy_plain(char c) {
    bool after_close = prev_ == Prev::kClose || prev_ == Prev::kQuoted;
    if (after_close && c != ',' && c != ']') return syntax(458);
    switch (c) {
      case '[':
        if (prev_ != Prev::kWord) return syntax(458);
        ++depth_;
        prev_ = Prev::kOpen;
        return emit(c);
      case ']':
        if (depth_ == 0) {
          done_ = true;
          return true;
        }
        --depth_;
        done_ = depth_ == 0;
        prev_ = Prev::kClose;
        return emit(c);
      case ',':
        prev_ = Prev::kComma;
        return emit(c);
      default:
        prev_ = Prev::kWord;
        return emit(c);
    }
  }

  // A quoted string starting at p (on its opening quote); returns the
  // position after it, or null after recording an error.
  const char *copy_quoted(const char *p) {
    const char quote = *p++;
    if (!emit('"')) return nullptr;
    std::size_t opened_at = len_;
    while (is_space(static_cast<unsigned char>(*p))) ++p;
    for (;;) {
      char c = *p;
      if (c == '\0') {
        fail(list_, KO_SEV_ERROR, 469, nullptr);
        return nullptr;
      }
      if (c == quote && quote == '"' && p[1] == '"') {  // doubled: one quote
        if (!emit('"') || !emit('"')) return nullptr;
        p += 2;
        continue;
      }
      if (c == quote) break;
      bool ok = is_space(static_cast<unsigned char>(c)) ? emit(' ')
                : c == '"'                               ? emit('"') && emit('"')
                                                         : emit(c);
      if (!ok) return nullptr;
      ++p;
    }
    while (len_ > opened_at && list_.text[len_ - 1] == ' ') --len_;
    if (!emit('"')) return nullptr;
    ++p;
    while (is_space(static_cast<unsigned char>(*p))) ++p;
    if (*p != '\0' && *p != ',' && *p != ']' && *p != ')') {
      syntax(458);
      return nullptr;
    }
    prev_ = Prev::kQuoted;
    return p;
  }

  ko_wkt_tokens &list_;
  std::size_t len_ = 0;
  int depth_ = 0;
  Prev prev_ = Prev::kStart;
  bool done_ = false;
};

// Second pass: splits the normalized text in place.  Returns the number of
// tokens found (which may exceed what the list holds).
int split(ko_wkt_tokens &list) {
  int count = 0;
  int depth = 0;
  auto record = [&](const char *text, int flags) {
    if (count < KO_WKT_MAX_TOKENS) list.tokens[count] = ko_wkt_token{text, depth, flags};
    ++count;
  };
  char *p = list.text;
  while (*p != '\0') {
    if (*p == '"') {
      // A quoted token: doubled quotes collapse while it is moved into place.
      char *start = p + 1;
      char *w = start;
      char *r = start;
      while (!(r[0] == '"' && r[1] != '"')) {
        *w++ = *r;
        r += r[0] == '"' ? 2 : 1;
      }
      *w = '\0';
      record(start, KO_WKT_TOKEN_QUOTED);
      p = r + 1;
    } else {
      char *start = p;
      while (*p != '\0' && *p != '[' && *p != ']' && *p != ',') ++p;
      if (*p == '[') {
        *p++ = '\0';
        record(start, KO_WKT_TOKEN_KEYWORD);
        ++depth;
        continue;
      }
      if (p > start) record(start, 0);
    }
    char sep = *p;
    if (sep == '\0') break;
    *p++ = '\0';
    if (sep == ']') --depth;
  }
  return count;
}

}  // namespace

extern "C" {

int ko_wkt_str_to_tokens(ko_wkt_tokens *list, const char *text, const char *keyword,
                         const char *alt_keyword) {
  if (list == nullptr) return 456;
  list->text[0] = '\0';
  list->count = 0;
  list->err_severity = 0;
  list->err_number = 0;
  list->err_message[0] = '\0';
  if (text == nullptr) {
    fail(*list, KO_SEV_ERROR, 456, nullptr);
    return 456;
  }
  const char *start = text;
  if (keyword != nullptr && *keyword != '\0') {
    start = find_node_keyword(text, keyword);
    if (start == nullptr && alt_keyword != nullptr && *alt_keyword != '\0')
      start = find_node_keyword(text, alt_keyword);
    if (start == nullptr) {
      fail(*list, KO_SEV_ERROR, 466, keyword);
      return 466;
    }
  }
  while (is_space(static_cast<unsigned char>(*start))) ++start;
  if (*start == '\0') {
    fail(*list, KO_SEV_WARNING, 457, nullptr);
    return 457;
  }
  if (!is_letter(static_cast<unsigned char>(*start))) {
    fail(*list, KO_SEV_ERROR, 463, nullptr);
    return 463;
  }
  if (!Normalizer(*list).run(start)) return list->err_number;
  int count = split(*list);
  if (count > KO_WKT_MAX_TOKENS) {
    char message[48];
    std::snprintf(message, sizeof message, "%d, %d", KO_WKT_MAX_TOKENS, count);
    fail(*list, KO_SEV_ERROR, 468, message);
    return 468;
  }
  list->count = count;
  return 0;
}

int ko_str_expand_wkt(const char *input, const char *prefix, uint32_t options, int size,
                      char *output) {
  if (input == nullptr) input = "";
  if (prefix == nullptr) prefix = "";
  // Writing in place: work from a copy of the input (on the stack when it
  // is short, as it nearly always is).
  char scratch[KO_STR_BUFFER_SIZE];
  ko::Owned<char> heap_copy;
  if (input == output) {
    std::size_t n = std::strlen(input);
    char *copy = scratch;
    if (n >= sizeof scratch) {
      heap_copy.reset(static_cast<char *>(ko_allocate_rtn(n + 1, 0, "wkt expand")));
      copy = heap_copy.get();
      if (copy == nullptr) {
        if (output != nullptr && size > 0) output[0] = '\0';
        return static_cast<int>(n + 1);
      }
    }
    std::memcpy(copy, input, n + 1);
    input = copy;
  }
  const char indent = (options & KO_STR_EXPAND_TABS) != 0 ? '\t' : ' ';
  ko::text::TextOut out(output, size);
  out.put(prefix);
  int depth = 0;
  for (const char *seg = input; *seg != '\0';) {
    const char *comma = std::strchr(seg, ',');
    std::size_t n = comma != nullptr ? static_cast<std::size_t>(comma - seg) + 1 : std::strlen(seg);
    bool opens = std::memchr(seg, '[', n) != nullptr;
    if (!opens) {
      out.put(' ');
    } else if (depth > 0) {
      out.put('\n');
      out.put(prefix);
      for (int i = 0; i < depth; ++i) out.put(indent);
    }
    out.put(seg, n);
    for (std::size_t i = 0; i < n; ++i) depth += seg[i] == '[' ? 1 : seg[i] == ']' ? -1 : 0;
    seg += n;
  }
  return out.finish();
}

int ko_wkt_header(char *buf, const char *keyword, const char *name) {
  if (keyword == nullptr) keyword = "";
  int n = 0;
  for (; keyword[n] != '\0'; ++n)
    if (buf != nullptr) buf[n] = to_upper(keyword[n]);
  if (buf == nullptr) return n;
  char *p = buf + n;
  *p++ = '[';
  if (name != nullptr) {
    *p++ = '"';
    std::size_t len = std::strlen(name);
    std::memcpy(p, name, len);
    p += len;
    *p++ = '"';
  }
  *p = '\0';
  return n;
}

uint32_t ko_wkt_object_type(const char *text) {
  if (text == nullptr) return 0;
  static constexpr struct {
    const char *keyword;
    uint32_t type;
  } kTypes[] = {
      {"geogcs", KO_TYPE_GEOGCS}, {"projcs", KO_TYPE_PROJCS},     {"vertcs", KO_TYPE_VERTCS},
      {"gxyzcs", KO_TYPE_GXYZCS}, {"geogtran", KO_TYPE_GEOGTRAN}, {"verttran", KO_TYPE_VERTTRAN},
  };
  for (const auto &t : kTypes)
    if (ko_strncmp_i(text, t.keyword, static_cast<int>(std::strlen(t.keyword))) == 0) return t.type;
  return 0;
}

}  // extern "C"
