// Number text: the digit rules of ko_dtoa on chosen values, its agreement
// with correctly rounded printf output on random values, round trips through
// ko_strtod, and independence from a locale whose decimal mark is a comma.
#include "ko.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace {

std::string dtoa(double value, int digits) {
  char buf[64];
  return ko_dtoa(buf, digits, value);
}

// Significant digits of a number text: the mantissa digits without leading
// and trailing zeros (so the ".0" ending does not count).
int significant_digits(const std::string &text) {
  std::string digits;
  for (char c : text) {
    if (c == 'e' || c == 'E') break;
    if (c >= '0' && c <= '9') digits += c;
  }
  size_t first = digits.find_first_not_of('0');
  if (first == std::string::npos) return 0;
  size_t last = digits.find_last_not_of('0');
  return static_cast<int>(last - first + 1);
}

// The shape every number text has: no blanks, and either exponent form or a
// decimal point with at least one digit after it.
void expect_number_shape(const std::string &text) {
  ASSERT_FALSE(text.empty());
  EXPECT_EQ(text.find(' '), std::string::npos) << text;
  EXPECT_LT(text.size(), 32u) << text;
  if (text.find('e') != std::string::npos) return;
  size_t dot = text.find('.');
  ASSERT_NE(dot, std::string::npos) << text;
  ASSERT_LT(dot + 1, text.size()) << text;
  EXPECT_TRUE(text[dot + 1] >= '0' && text[dot + 1] <= '9') << text;
}

// Half a unit of the last written digit (relative) plus the rounding of the
// reading itself (one part in 2^53, or the spacing of subnormals).
double within(double x, double relative) {
  return (relative + 0x1p-53) * std::fabs(x) + std::numeric_limits<double>::denorm_min();
}

// Random finite doubles over the whole exponent range.
double random_double(std::mt19937_64 &rng) {
  for (;;) {
    uint64_t bits = rng();
    double x;
    std::memcpy(&x, &bits, sizeof x);
    if (std::isfinite(x)) return x;
  }
}

// Random doubles with decimal exponents where fixed-point text is used.
double random_moderate(std::mt19937_64 &rng) {
  std::uniform_real_distribution<double> mantissa(1.0, 10.0);
  std::uniform_int_distribution<int> exponent(-12, 20);
  double x = mantissa(rng) * std::pow(10.0, exponent(rng));
  return (rng() & 1) != 0 ? -x : x;
}

// ------------------------------------------------------------- digit rules

TEST(NumberText, DigitRulesOnChosenValues) {
  // Each expectation follows from the rules: format with d significant
  // digits; for 16/17 digit requests below 1e12 drop one digit when the two
  // before the last are 00 or 99; fixed point with ".0" endings; exponent
  // form below 1e-9, for long fixed texts and from d integer digits on.
  struct Case {
    double value;
    int digits;
    const char *expected;
  } cases[] = {
      {6378137.0, 16, "6378137.0"},                 // 6.378137000000000e+06: 00 trimmed
      {298.257223563, 16, "298.257223563"},
      {0.3048, 16, "0.3048"},                       // 3.048000000000000e-01
      {0.017453292519943295, 16, "0.0174532925199433"},  // ...99433|0: "33" kept
      {0.017453292519943295, 17, "0.017453292519943295"},
      {0.1, 16, "0.1"},
      {0.1, 17, "0.1"},                             // 1.0000000000000001e-01: 00 trimmed
      {0.1 + 0.2, 17, "0.3"},                       // 3.0000000000000004e-01
      {0.99999999999999989, 16, "1.0"},             // 9.999999999999999e-01: 99 trimmed
      {1.0 / 3.0, 16, "0.3333333333333333"},
      {1.0 / 298.257223563, 16, "0.00335281066474748"},  // 3.352810664747480e-03
      {6378206.4, 16, "6378206.4"},
      {-273.15, 16, "-273.15"},
      {0.0, 16, "0.0"},
      {-0.5, 16, "-0.5"},
      {100.0, 16, "100.0"},
      {1e15, 16, "1000000000000000.0"},             // e >= 12: not trimmed, k = 0
      {1e16, 16, "1e+16"},                          // 17 integer digits > 16
      {1e16, 17, "10000000000000000.0"},
      {123456789012345678.0, 16, "1.234567890123457e+17"},
      {1e-12, 16, "1e-12"},                         // below 1e-9: exponent form
      {1.5e-9, 16, "0.0000000015"},
      {1.5e-10, 16, "1.5e-10"},
      {-1e-5, 16, "-0.00001"},
      {1.2345678901234567e-9, 17, "1.2345678901234566e-09"},  // fixed text too long
      {12345.678, 6, "12345.7"},
      {1234567.0, 6, "1.23457e+06"},
      {0.000123456789, 6, "0.000123457"},
      {123.456, 3, "123.0"},
      {99.99, 3, "100.0"},
      {9.96, 2, "10.0"},
      {2.7, 0, "3.0"},                              // digits below 1 mean 1
      {2.5, 0, "2.0"},                              // exact tie: printf rounds to even
      {0.05, -3, "0.05"},
      {0.017453292519943295, 40, "0.017453292519943295"},  // above 17 means 17
      {std::numeric_limits<double>::infinity(), 16, "Inf"},
      {-std::numeric_limits<double>::infinity(), 16, "Inf"},
      {std::numeric_limits<double>::quiet_NaN(), 16, "NaN"},
      {std::numeric_limits<double>::denorm_min(), 17, "4.9406564584124654e-324"},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(dtoa(c.value, c.digits), c.expected) << c.value << " at " << c.digits;
  }
  char buf[8];
  EXPECT_EQ(ko_dtoa(nullptr, 16, 1.0), nullptr);
  EXPECT_EQ(ko_dtoa_ld(buf, 16, 1.0), buf);
}

TEST(NumberText, FewerDigitsAgreeWithCorrectlyRoundedPrintf) {
  // Below 16 digits nothing is trimmed: the text must read back as the value
  // rounded to d significant digits, which "%.*e" gives independently.
  std::mt19937_64 rng(4326);
  for (int i = 0; i < 30000; ++i) {
    double x = (i % 2 == 0) ? random_moderate(rng) : random_double(rng);
    int digits = 1 + i % 15;
    std::string text = dtoa(x, digits);
    expect_number_shape(text);
    char reference[64];
    std::snprintf(reference, sizeof reference, "%.*e", digits - 1, x);
    ASSERT_EQ(std::strtod(text.c_str(), nullptr), std::strtod(reference, nullptr))
        << x << " at " << digits << ": " << text << " vs " << reference;
    ASSERT_LE(significant_digits(text), digits) << text;
  }
}

TEST(NumberText, SeventeenDigitsRoundTripUnlessNoiseWasTrimmed) {
  // 17 significant digits identify every double.  The noise rule may write
  // 16 instead; then the text is the value rounded to 16 digits, within half
  // a unit of the 16th digit.
  std::mt19937_64 rng(3857);
  int trimmed = 0;
  for (int i = 0; i < 50000; ++i) {
    double x = (i % 2 == 0) ? random_moderate(rng) : random_double(rng);
    std::string text = dtoa(x, 17);
    expect_number_shape(text);
    char *end = nullptr;
    double back = ko_strtod(text.c_str(), &end);
    ASSERT_EQ(*end, '\0') << text;
    if (back == x) continue;
    ++trimmed;
    ASSERT_LE(significant_digits(text), 16) << x << " -> " << text;
    ASSERT_LE(std::fabs(back - x), within(x, 5e-16)) << x << " -> " << text;
  }
  // Trimming is the exception: two given digits are 00 or 99 about 2% of
  // the time, and only part of those lose exactness.
  EXPECT_LT(trimmed, 50000 / 20);
}

TEST(NumberText, SixteenDigitsStayWithinTheTrimmedPrecision) {
  std::mt19937_64 rng(27700);
  for (int i = 0; i < 30000; ++i) {
    double x = (i % 2 == 0) ? random_moderate(rng) : random_double(rng);
    std::string text = dtoa(x, 16);
    expect_number_shape(text);
    double back = ko_strtod(text.c_str(), nullptr);
    int written = significant_digits(text);
    ASSERT_LE(written, 16) << text;
    // Rounded at the 16th digit, or at the 15th when noise was trimmed.
    ASSERT_LE(std::fabs(back - x), within(x, written <= 15 ? 5e-15 : 5e-16))
        << x << " -> " << text;
  }
}

// ------------------------------------------------------------ text to number

TEST(NumberReading, ReadsLikeStrtodInTheCLocale) {
  struct Case {
    const char *text;
    double value;
    int consumed;
  } cases[] = {
      {"12.5", 12.5, 4},        {"  -3.25e2xyz", -325.0, 9}, {"6378137.0]", 6378137.0, 9},
      {"abc", 0.0, 0},          {".5", 0.5, 2},              {"1e400", HUGE_VAL, 5},
      {"0.017453292519943295", 0.017453292519943295, 20},
  };
  for (const Case &c : cases) {
    char *end = nullptr;
    EXPECT_EQ(ko_strtod(c.text, &end), c.value) << c.text;
    ASSERT_NE(end, nullptr);
    EXPECT_EQ(end - c.text, c.consumed) << c.text;
  }
}

TEST(NumberReading, NullOrEmptyTextGivesZeroAndNoEnd) {
  char *end = reinterpret_cast<char *>(1);
  EXPECT_EQ(ko_strtod(nullptr, &end), 0.0);
  EXPECT_EQ(end, nullptr);
  end = reinterpret_cast<char *>(1);
  EXPECT_EQ(ko_strtod("", &end), 0.0);
  EXPECT_EQ(end, nullptr);
  EXPECT_EQ(ko_strtod("7.5", nullptr), 7.5);
}

// ------------------------------------------------------------------ locale

// Switches the process to a locale whose decimal mark is a comma and back.
class CommaLocale : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr)
        << "the de_DE.UTF-8 locale is missing: run scripts/deps.sh";
    char probe[16];
    std::snprintf(probe, sizeof probe, "%.1f", 1.5);
    ASSERT_STREQ(probe, "1,5");
  }
  void TearDown() override { std::setlocale(LC_ALL, "C"); }
};

TEST_F(CommaLocale, DecimalCharacterIsProbedFromTheLocale) {
  EXPECT_EQ(ko_get_decimal_point_char(), ',');
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(ko_get_decimal_point_char(), '.');
}

TEST_F(CommaLocale, WritingAlwaysUsesADot) {
  char buf[64];
  EXPECT_STREQ(ko_dtoa(buf, 16, 12.5), "12.5");
  EXPECT_STREQ(ko_dtoa(buf, 16, 6378137.0), "6378137.0");
  EXPECT_STREQ(ko_dtoa(buf, 16, 0.017453292519943295), "0.0174532925199433");
  EXPECT_STREQ(ko_dtoa(buf, 16, 1e-12), "1e-12");
  EXPECT_STREQ(ko_dtoa(buf, 17, 1.2345678901234567e-9), "1.2345678901234566e-09");
  // The _ld form keeps the locale's mark.
  EXPECT_STREQ(ko_dtoa_ld(buf, 16, 12.5), "12,5");
  EXPECT_STREQ(ko_dtoa_ld(buf, 16, 6378137.0), "6378137,0");
}

TEST_F(CommaLocale, ReadingAcceptsOnlyADot) {
  char *end = nullptr;
  const char *text = "12.5 rest";
  EXPECT_EQ(ko_strtod(text, &end), 12.5);
  EXPECT_EQ(end, text + 4);
  end = reinterpret_cast<char *>(1);
  EXPECT_EQ(ko_strtod("12,5", &end), 0.0);
  EXPECT_EQ(end, nullptr);
  // Only the first 127 characters are read; the end pointer maps back.
  std::string padded = "1.5" + std::string(200, ' ');
  EXPECT_EQ(ko_strtod(padded.c_str(), &end), 1.5);
  EXPECT_EQ(end, padded.c_str() + 3);
}

TEST_F(CommaLocale, RoundTripsAreUnchanged) {
  std::mt19937_64 rng(31467);
  for (int i = 0; i < 5000; ++i) {
    double x = random_moderate(rng);
    std::string text = dtoa(x, 17);
    ASSERT_EQ(text.find(','), std::string::npos) << text;
    double back = ko_strtod(text.c_str(), nullptr);
    std::setlocale(LC_ALL, "C");
    ASSERT_EQ(text, dtoa(x, 17)) << "the text depends on the locale";
    ASSERT_EQ(back, ko_strtod(text.c_str(), nullptr));
    std::setlocale(LC_ALL, "de_DE.UTF-8");
  }
}

TEST_F(CommaLocale, EnforceDotReplacesEveryMark) {
  char text[] = "1,5 2,25 3";
  EXPECT_STREQ(ko_enforce_dot_decimal(text), "1.5 2.25 3");
  std::setlocale(LC_ALL, "C");
  char unchanged[] = "1,5";
  EXPECT_STREQ(ko_enforce_dot_decimal(unchanged), "1,5");
  EXPECT_EQ(ko_enforce_dot_decimal(nullptr), nullptr);
}

}  // namespace
