// Text scanners: splitting at a delimiter, wildcard matching (against the C
// library's fnmatch on random patterns) and escape sequences.
#include "ko.h"

#include <fnmatch.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

std::vector<std::string> tokenize(std::string text, char delimiter, int max) {
  std::vector<char> buf(text.begin(), text.end());
  buf.push_back('\0');
  std::vector<char *> tokens(static_cast<size_t>(max > 0 ? max : 1), nullptr);
  int n = ko_str_tokenize(buf.data(), delimiter, tokens.data(), max);
  return std::vector<std::string>(tokens.begin(), tokens.begin() + n);
}

using Tokens = std::vector<std::string>;

TEST(Tokenize, SplitsAtTheDelimiterAndTrimsEachToken) {
  struct Case {
    const char *text;
    char delimiter;
    int max;
    Tokens expected;
  } cases[] = {
      {"a, b ,c", ',', 8, {"a", "b", "c"}},
      {"a,,b", ',', 8, {"a", "", "b"}},
      {"a,", ',', 8, {"a", ""}},
      {"EPSG;4326; WGS 84 ", ';', 8, {"EPSG", "4326", "WGS 84"}},
      {"a,b,c,d", ',', 2, {"a", "b,c,d"}},  // the last token keeps the rest
      {"a,b", ',', 1, {"a,b"}},
      {"single", ',', 8, {"single"}},
      {"   ", ',', 8, {""}},
      {"", ',', 8, {}},
      {"a,b", '\0', 8, {"a,b"}},
      {"a\tb", '\t', 8, {"a", "b"}},
  };
  for (const Case &c : cases) EXPECT_EQ(tokenize(c.text, c.delimiter, c.max), c.expected) << c.text;
}

TEST(Tokenize, RejectsUnusableArguments) {
  char text[] = "a,b";
  char *tokens[2];
  EXPECT_EQ(ko_str_tokenize(nullptr, ',', tokens, 2), 0);
  EXPECT_EQ(ko_str_tokenize(text, ',', nullptr, 2), 0);
  EXPECT_EQ(ko_str_tokenize(text, ',', tokens, 0), 0);
  EXPECT_STREQ(text, "a,b");  // untouched
}

TEST(Wildcard, AgreesWithFnmatchOnRandomPatterns) {
  std::mt19937 rng(8901);
  auto random_string = [&](const std::string &alphabet, int max_len) {
    std::string s(static_cast<size_t>(std::uniform_int_distribution<int>(0, max_len)(rng)), ' ');
    for (char &ch : s) ch = alphabet[std::uniform_int_distribution<size_t>(0, alphabet.size() - 1)(rng)];
    return s;
  };
  for (int i = 0; i < 40000; ++i) {
    std::string pattern = random_string("ab*?A", 6);
    std::string text = random_string("abAB", 8);
    bool fold = i % 2 == 1;
    bool expected = fnmatch(pattern.c_str(), text.c_str(), fold ? FNM_CASEFOLD : 0) == 0;
    ASSERT_EQ(ko_str_wildcard_match(pattern.c_str(), text.c_str(), fold) == 1, expected)
        << '"' << pattern << "\" on \"" << text << "\" fold " << fold;
  }
}

TEST(Wildcard, QuestionMarkTakesOneWholeCharacter) {
  EXPECT_EQ(ko_str_wildcard_match("caf?", "caf\xC3\xA9", 0), 1);
  EXPECT_EQ(ko_str_wildcard_match("caf??", "caf\xC3\xA9", 0), 0);
  EXPECT_EQ(ko_str_wildcard_match("*?", "\xE5\x8C\x97", 0), 1);
  EXPECT_EQ(ko_str_wildcard_match("?\xE4\xBA\xAC*", "\xE5\x8C\x97\xE4\xBA\xAC 1954", 0), 1);
}

TEST(Wildcard, EverydayPatterns) {
  EXPECT_EQ(ko_str_wildcard_match("*.gsb", "ntv2_0.gsb", 0), 1);
  EXPECT_EQ(ko_str_wildcard_match("*.GSB", "ntv2_0.gsb", 0), 0);
  EXPECT_EQ(ko_str_wildcard_match("*.GSB", "ntv2_0.gsb", 1), 1);
  EXPECT_EQ(ko_str_wildcard_match("NAD_1983_*_Zone_??N", "NAD_1983_UTM_Zone_10N", 0), 1);
  EXPECT_EQ(ko_str_wildcard_match("*", "", 0), 1);
  EXPECT_EQ(ko_str_wildcard_match("", "", 0), 1);
  EXPECT_EQ(ko_str_wildcard_match("?", "", 0), 0);
  EXPECT_EQ(ko_str_wildcard_match(nullptr, "x", 0), 0);
  EXPECT_EQ(ko_str_wildcard_match("x", nullptr, 0), 0);
  // Many stars on a long text stay fast (no exponential backtracking).
  std::string text(5000, 'a');
  EXPECT_EQ(ko_str_wildcard_match("*a*a*a*a*a*a*a*a*a*b", text.c_str(), 0), 0);
}

TEST(Unescape, ResolvesTheKnownEscapesInPlace) {
  struct Case {
    const char *text;
    const char *expected;
  } cases[] = {
      {"a\\nb", "a\nb"},
      {"tab\\there", "tab\there"},
      {"back\\\\slash", "back\\slash"},
      {"\\\"quoted\\\"", "\"quoted\""},
      {"it\\'s", "it's"},
      {"C:\\grids\\x", "C:\\grids\\x"},  // unknown escapes stay as written
      {"end\\", "end\\"},
      {"\\\\n", "\\n"},
      {"", ""},
  };
  for (const Case &c : cases) {
    std::string buf = c.text;
    int len = ko_str_unescape(buf.data());
    EXPECT_STREQ(buf.c_str(), c.expected) << c.text;
    EXPECT_EQ(len, static_cast<int>(std::string(c.expected).size()));
  }
  EXPECT_EQ(ko_str_unescape(nullptr), 0);
}

}  // namespace
