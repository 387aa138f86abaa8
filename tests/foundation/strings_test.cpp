// Bounded copies, formatting into fixed buffers, the case-insensitive and
// name comparisons (against independent oracles on random text) and trim.
#include "ko.h"

#include <gtest/gtest.h>
#include <strings.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <random>
#include <string>

namespace {

int sign(int v) { return (v > 0) - (v < 0); }

// ------------------------------------------------------------ bounded copies

TEST(BoundedCopy, CopiesAtMostSizeMinusOneAndTerminates) {
  const std::string hundred(100, 'h');
  struct Case {
    const char *src;
    int size;
    const char *expected;
    int copied;
  } cases[] = {
      {"abc", 1, "", 0},
      {"abc", 3, "ab", 2},
      {"abc", 4, "abc", 3},
      {"abc", 80, "abc", 3},
      {"", 10, "", 0},
      {nullptr, 10, "", 0},
      {hundred.c_str(), 80, nullptr, 79},
  };
  for (const Case &c : cases) {
    char buf[128];
    std::memset(buf, 'Z', sizeof buf);
    EXPECT_EQ(ko_strncpy(buf, c.src, c.size), c.copied) << c.size;
    EXPECT_EQ(std::strlen(buf), static_cast<size_t>(c.copied));
    if (c.expected != nullptr) {
      EXPECT_STREQ(buf, c.expected);
    }
    // Nothing is written after the terminator.
    EXPECT_EQ(buf[c.copied + 1], 'Z') << c.size;
  }
}

TEST(BoundedCopy, RefusesUnusableDestinations) {
  char buf[4] = "xyz";
  EXPECT_EQ(ko_strncpy(buf, "abc", 0), 0);
  EXPECT_EQ(ko_strncpy(buf, "abc", -5), 0);
  EXPECT_STREQ(buf, "xyz");
  EXPECT_EQ(ko_strncpy(nullptr, "abc", 4), 0);
}

TEST(BoundedCopy, Utf16CopyLengthAndComparison) {
  const ko_uchar src[] = {'W', 'G', 'S', 0x00E9, 0};
  ko_uchar buf[8];
  std::fill(std::begin(buf), std::end(buf), ko_uchar{0xAAAA});
  EXPECT_EQ(ko_strncpy_u(buf, src, 3), 2);
  EXPECT_EQ(buf[2], 0);
  EXPECT_EQ(buf[3], 0xAAAA);
  EXPECT_EQ(ko_strncpy_u(buf, src, 8), 4);
  EXPECT_EQ(ko_strlen_u(buf), 4);
  EXPECT_EQ(ko_strcmp_u(buf, src), 0);
  EXPECT_EQ(ko_strncpy_u(buf, nullptr, 8), 0);
  EXPECT_EQ(ko_strlen_u(nullptr), 0);
  EXPECT_LT(ko_strcmp_u(buf, src), 0);  // "" before "WGSé"
  EXPECT_EQ(ko_strcmp_u(nullptr, buf), 0);
  const ko_uchar high[] = {0xFFFF, 0};
  EXPECT_GT(ko_strcmp_u(high, src), 0);  // units compare unsigned
}

TEST(BoundedFormat, CutTextKeepsSizeMinusOneCharacters) {
  struct Case {
    const char *text;
    int size;
    const char *expected;
    int result;
  } cases[] = {
      {"abcdefghij", 8, "abcdefg", 7},  // cut
      {"abcdefg", 8, "abcdefg", 7},     // fits exactly
      {"abc", 8, "abc", 3},
      {"abc", 1, "", 0},
      {"", 8, "", 0},
  };
  for (const Case &c : cases) {
    char buf[16];
    std::memset(buf, 'Z', sizeof buf);
    EXPECT_EQ(ko_snprintf(buf, c.size, "%s", c.text), c.result) << c.text;
    EXPECT_STREQ(buf, c.expected);
    EXPECT_EQ(buf[c.size], 'Z');  // never past the buffer
  }
  char buf[4] = "xyz";
  EXPECT_EQ(ko_snprintf(buf, 0, "%d", 5), 0);
  EXPECT_STREQ(buf, "xyz");
  EXPECT_EQ(ko_snprintf(nullptr, 4, "%d", 5), 0);
}

// --------------------------------------------------------------- comparisons

std::string random_text(std::mt19937 &rng, const std::string &alphabet, int max_len) {
  std::uniform_int_distribution<int> len(0, max_len);
  std::uniform_int_distribution<size_t> pick(0, alphabet.size() - 1);
  std::string s(static_cast<size_t>(len(rng)), ' ');
  for (char &c : s) c = alphabet[pick(rng)];
  return s;
}

TEST(CaseInsensitive, AgreesWithStrcasecmpOnRandomText) {
  std::mt19937 rng(20240611);
  const std::string alphabet = "aAbBzZ_-[`@ 09";
  for (int i = 0; i < 20000; ++i) {
    std::string a = random_text(rng, alphabet, 6);
    std::string b = random_text(rng, alphabet, 6);
    ASSERT_EQ(sign(ko_strcmp_i(a.c_str(), b.c_str())), sign(strcasecmp(a.c_str(), b.c_str())))
        << '"' << a << "\" vs \"" << b << '"';
    int n = static_cast<int>(i % 5);
    ASSERT_EQ(sign(ko_strncmp_i(a.c_str(), b.c_str(), n)),
              sign(strncasecmp(a.c_str(), b.c_str(), static_cast<size_t>(n))));
  }
}

TEST(CaseInsensitive, PrefixFormsUseOneSidesLength) {
  EXPECT_EQ(ko_strncmp_i1("GEOG", "geogcs"), 0);
  EXPECT_NE(ko_strncmp_i2("GEOG", "geogcs"), 0);
  EXPECT_EQ(ko_strncmp_i2("PROJCS[", "projcs"), 0);
  EXPECT_NE(ko_strncmp_i1("PROJCS[", "projcs"), 0);
  EXPECT_EQ(ko_strcmp_i(nullptr, ""), 0);
  EXPECT_LT(ko_strcmp_i(nullptr, "a"), 0);
  EXPECT_EQ(ko_strncmp_i1(nullptr, "anything"), 0);
}

// Independent model of a name comparison: drop the filler characters, fold
// case, then compare as plain text.
std::string normalised_name(const std::string &s) {
  std::string out;
  for (unsigned char c : s) {
    if (std::strchr(" \t\n\v\f\r()-/\\_", c) != nullptr && c != 0) continue;
    out += static_cast<char>(std::tolower(c));
  }
  return out;
}

TEST(NameComparison, AgreesWithNormalisedTextOnRandomNames) {
  std::mt19937 rng(77);
  const std::string alphabet = "aAbB ()-/\\_\t.9";
  for (int i = 0; i < 20000; ++i) {
    std::string a = random_text(rng, alphabet, 8);
    std::string b = random_text(rng, alphabet, 8);
    std::string na = normalised_name(a);
    std::string nb = normalised_name(b);
    ASSERT_EQ(sign(ko_strcmp_ci(a.c_str(), b.c_str())), sign(na.compare(nb)))
        << '"' << a << "\" vs \"" << b << '"';
    int n = static_cast<int>(i % 6);
    ASSERT_EQ(sign(ko_strncmp_ci(a.c_str(), b.c_str(), n)),
              sign(na.substr(0, n).compare(nb.substr(0, n))));
    ASSERT_EQ(ko_strncmp_ci2(a.c_str(), b.c_str()) == 0, na.substr(0, nb.size()) == nb);
    ASSERT_EQ(ko_strncmp_ci1(a.c_str(), b.c_str()) == 0, nb.substr(0, na.size()) == na);
  }
}

TEST(NameComparison, NamesThatDifferOnlyInFillersAreEqual) {
  struct Case {
    const char *a;
    const char *b;
    bool equal;
  } cases[] = {
      {"Foot_US", "foot us", true},
      {"Foot_US", "Foot (US)", true},
      {"Transverse_Mercator", "transverse mercator", true},
      {"GCS_North_American_1983", "gcs north-american 1983", true},
      {"D_WGS_1984", "d/wgs\\1984", true},
      {"Meter", "Meters", false},
      {"Meter", "Metre", false},
      {"WGS 84", "WGS 1984", false},
      {"", "  ()_ ", true},
      {nullptr, "", true},
      {nullptr, "a", false},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(ko_strcmp_ci(c.a, c.b) == 0, c.equal) << (c.a ? c.a : "(null)") << " / " << c.b;
    EXPECT_EQ(ko_strcmp_ci(c.b, c.a) == 0, c.equal);
  }
  // The result is the difference of the first differing characters.
  EXPECT_EQ(ko_strcmp_ci("Meter", "Meters"), 0 - 's');
  EXPECT_EQ(ko_strcmp_ci("B", "a"), 'b' - 'a');
}

TEST(NameComparison, LimitsCountSignificantCharactersOnly) {
  EXPECT_EQ(ko_strncmp_ci("Meter", "Meters", 5), 0);
  EXPECT_NE(ko_strncmp_ci("Meter", "Meters", 6), 0);
  EXPECT_EQ(ko_strncmp_ci("W G S 72", "wgs84", 3), 0);
  EXPECT_EQ(ko_strncmp_ci("abc", "xyz", 0), 0);
  EXPECT_EQ(ko_strncmp_ci2("Transverse Mercator (South Orientated)", "transverse_mercator"), 0);
  EXPECT_NE(ko_strncmp_ci1("Transverse Mercator (South Orientated)", "transverse_mercator"), 0);
  EXPECT_EQ(ko_strncmp_ci1("en", "en_US"), 0);
  EXPECT_EQ(ko_strncmp_ci2("en-GB", "en"), 0);
  EXPECT_NE(ko_strncmp_ci2("e", "en"), 0);
}

// ---------------------------------------------------------------------- trim

TEST(Trim, RemovesWhiteSpaceAtBothEndsInPlace) {
  struct Case {
    const char *text;
    const char *expected;
  } cases[] = {
      {"  WGS 84  ", "WGS 84"}, {"\t\n WGS 84\r\v\f", "WGS 84"}, {"WGS 84", "WGS 84"},
      {"   ", ""},              {"", ""},                         {"x", "x"},
      {" a b ", "a b"},
  };
  for (const Case &c : cases) {
    char buf[32];
    std::strcpy(buf, c.text);
    EXPECT_EQ(ko_str_trim_buf(buf), buf);
    EXPECT_STREQ(buf, c.expected) << '"' << c.text << '"';
  }
  EXPECT_EQ(ko_str_trim_buf(nullptr), nullptr);
}

}  // namespace
