// UTF-8 / UTF-16 / ASCII conversions checked against the compiler's own
// encoding of string literals, the Unicode Standard's substitution of
// malformed input, and the name text built for display.
#include "ko.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

std::u16string to_u16(const char *utf8, int size = 128) {
  ko_uchar buf[128];
  int n = ko_str_utf8_to_uni(buf, utf8, size);
  EXPECT_EQ(n, ko_strlen_u(buf));
  return std::u16string(buf, buf + n);
}

std::string to_utf8(const std::u16string &text, int size = 128) {
  char buf[128];
  int n = ko_str_uni_to_utf8(buf, reinterpret_cast<const ko_uchar *>(text.c_str()), size);
  EXPECT_EQ(static_cast<size_t>(n), std::strlen(buf));
  return std::string(buf, static_cast<size_t>(n));
}

TEST(Utf, RoundTripsAgreeWithTheCompilersEncoding) {
  struct Case {
    const char8_t *utf8;
    const char16_t *utf16;
  } cases[] = {
      {u8"WGS 84", u"WGS 84"},
      {u8"Réseau géodésique français", u"Réseau géodésique français"},
      {u8"Ελληνικό Γεωδαιτικό Σύστημα", u"Ελληνικό Γεωδαιτικό Σύστημα"},
      {u8"北京 1954", u"北京 1954"},
      {u8"map \U0001F5FA and \U00010348", u"map \U0001F5FA and \U00010348"},
      {u8"", u""},
  };
  for (const Case &c : cases) {
    const char *utf8 = reinterpret_cast<const char *>(c.utf8);
    EXPECT_EQ(to_u16(utf8), std::u16string(c.utf16)) << utf8;
    EXPECT_EQ(to_utf8(c.utf16), std::string(utf8));
  }
}

TEST(Utf, NeverSplitsACharacterAtTheEndOfTheBuffer) {
  // size 3 leaves room for two units: 'a' fits, the surrogate pair does not.
  EXPECT_EQ(to_u16(reinterpret_cast<const char *>(u8"a\U0001F600b"), 3), u"a");
  EXPECT_EQ(to_u16(reinterpret_cast<const char *>(u8"a\U0001F600b"), 4), u"a\U0001F600");
  // "é" takes two bytes: with room for one byte nothing is written.
  EXPECT_EQ(to_utf8(u"é", 2), "");
  EXPECT_EQ(to_utf8(u"aé", 3), "a");
  EXPECT_EQ(to_utf8(u"a\U0001F600", 5), "a");
  EXPECT_EQ(to_utf8(u"a\U0001F600", 6), reinterpret_cast<const char *>(u8"a\U0001F600"));
}

TEST(Utf, MalformedInputBecomesReplacementCharacters) {
  // Maximal-subpart substitution, as in the Unicode Standard's examples
  // (chapter 3, tables 3-8 to 3-11).
  struct Case {
    const char *utf8;
    std::u16string expected;
  } cases[] = {
      {"\xC3(", u"\uFFFD("},                       // lead byte without its trail
      {"\xC0\xAF", u"\uFFFD\uFFFD"},               // overlong form
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},     // encoded surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above U+10FFFF
      {"ab\xE2\x82", u"ab\uFFFD"},                 // cut at the end
      {"\xE2\x82(x", u"\uFFFD(x"},                 // one mark for the valid prefix
      {"\xFF", u"\uFFFD"},
      {"\x80z", u"\uFFFDz"},
  };
  for (const Case &c : cases) EXPECT_EQ(to_u16(c.utf8), c.expected) << c.utf8;

  const char16_t lone_high[] = {u'a', 0xD800, u'b', 0};
  const char16_t lone_low[] = {0xDC00, 0};
  EXPECT_EQ(to_utf8(lone_high), "a\xEF\xBF\xBD" "b");
  EXPECT_EQ(to_utf8(lone_low), "\xEF\xBF\xBD");
}

TEST(Utf, NullAndUnusableArguments) {
  ko_uchar ubuf[4] = {'x', 'x', 'x', 0};
  char buf[4] = "xxx";
  EXPECT_EQ(ko_str_utf8_to_uni(ubuf, nullptr, 4), 0);
  EXPECT_EQ(ubuf[0], 0);
  EXPECT_EQ(ko_str_uni_to_utf8(buf, nullptr, 4), 0);
  EXPECT_STREQ(buf, "");
  EXPECT_EQ(ko_str_utf8_to_uni(nullptr, "abc", 4), 0);
  EXPECT_EQ(ko_str_uni_to_utf8(nullptr, ubuf, 4), 0);
  EXPECT_EQ(ko_str_asc_to_uni(ubuf, "abc", 0), 0);
  EXPECT_EQ(ko_str_uni_to_asc(buf, ubuf, 0), 0);
}

TEST(Ascii, WidensBytesAndNarrowsToSevenBits) {
  ko_uchar ubuf[8];
  EXPECT_EQ(ko_str_asc_to_uni(ubuf, "Caf\xE9", 8), 4);
  EXPECT_EQ(std::u16string(ubuf, ubuf + 4), u"Café");
  EXPECT_EQ(ko_str_asc_to_uni(ubuf, "abcdef", 4), 3);
  EXPECT_EQ(std::u16string(ubuf, ubuf + 3), u"abc");

  char buf[8];
  EXPECT_EQ(ko_str_uni_to_asc(buf, reinterpret_cast<const ko_uchar *>(u"Café\U0001F600"), 8), 6);
  EXPECT_STREQ(buf, "Caf???");
  EXPECT_EQ(ko_str_uni_to_asc(buf, reinterpret_cast<const ko_uchar *>(u"abcdefghij"), 8), 7);
  EXPECT_STREQ(buf, "abcdefg");
}

TEST(NamesToBuffer, ChoosesNameDisplayNameOrBoth) {
  const auto *disp = reinterpret_cast<const ko_uchar *>(u"Système géodésique");
  const auto *same = reinterpret_cast<const ko_uchar *>(u"NTF");
  const ko_uchar empty[] = {0};
  struct Case {
    int flags;
    const char *name;
    const ko_uchar *dispname;
    std::u16string expected;
  } cases[] = {
      {KO_NAMES_NAME, "NTF", disp, u"NTF"},
      {KO_NAMES_DISPNAME, "NTF", disp, u"Système géodésique"},
      {KO_NAMES_DISPNAME, "NTF", nullptr, u"NTF"},
      {KO_NAMES_DISPNAME, "NTF", empty, u"NTF"},
      {KO_NAMES_BOTH, "NTF", disp, u"NTF (Système géodésique)"},
      {KO_NAMES_BOTH, "NTF", same, u"NTF"},
      {KO_NAMES_BOTH, "NTF", nullptr, u"NTF"},
      {KO_NAMES_BOTH, "", disp, u"Système géodésique"},
      {KO_NAMES_BOTH, nullptr, nullptr, u""},
      {0, "Réseau", disp, u"Réseau"},
  };
  for (const Case &c : cases) {
    ko_uchar buf[80];
    int n = ko_str_names_to_buf(buf, 80, c.flags, c.name, c.dispname);
    EXPECT_EQ(std::u16string(buf, buf + n), c.expected) << c.flags << " " << (c.name ? c.name : "");
    EXPECT_EQ(buf[n], 0);
  }
}

TEST(NamesToBuffer, StaysWithinTheBuffer) {
  const auto *disp = reinterpret_cast<const ko_uchar *>(u"Display");
  ko_uchar buf[12];
  std::fill(std::begin(buf), std::end(buf), ko_uchar{0xAAAA});
  int n = ko_str_names_to_buf(buf, 10, KO_NAMES_BOTH, "Name", disp);
  EXPECT_EQ(n, 9);
  EXPECT_EQ(std::u16string(buf, buf + n), u"Name (Dis");
  EXPECT_EQ(buf[10], 0xAAAA);
  EXPECT_EQ(ko_str_names_to_buf(nullptr, 10, KO_NAMES_NAME, "x", nullptr), 0);
  EXPECT_EQ(ko_str_names_to_buf(buf, 0, KO_NAMES_NAME, "x", nullptr), 0);
}

}  // namespace
