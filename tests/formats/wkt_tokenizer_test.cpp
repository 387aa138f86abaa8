// Tokenizer, pretty-printer and keyword helpers of the WKT1 format.
#include "ko.h"
#include "formats/wkt_support.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

struct Tok {
  std::string text;
  int depth;
  int flags;
  bool operator==(const Tok &) const = default;
};

std::ostream &operator<<(std::ostream &os, const Tok &t) {
  return os << "{" << t.text << "," << t.depth << "," << t.flags << "}";
}

constexpr int K = KO_WKT_TOKEN_KEYWORD;
constexpr int Q = KO_WKT_TOKEN_QUOTED;

struct Tokenized {
  std::unique_ptr<ko_wkt_tokens> list = std::make_unique<ko_wkt_tokens>();
  int result = -1;
  std::vector<Tok> tokens() const {
    std::vector<Tok> out;
    for (int i = 0; i < list->count; ++i)
      out.push_back({list->tokens[i].text, list->tokens[i].depth, list->tokens[i].flags});
    return out;
  }
};

Tokenized tokenize(const std::string &text, const char *keyword = nullptr, const char *alt = nullptr) {
  Tokenized t;
  t.result = ko_wkt_str_to_tokens(t.list.get(), text.c_str(), keyword, alt);
  return t;
}

TEST(WktTokenizer, SplitsNodesIntoKeywordsAndValuesWithDepths) {
  auto t = tokenize(R"(GEOGCS["n",DATUM["d",SPHEROID["s",1,2]],UNIT["u",3]])");
  ASSERT_EQ(t.result, 0);
  std::vector<Tok> want = {{"GEOGCS", 0, K}, {"n", 1, Q},        {"DATUM", 1, K}, {"d", 2, Q},
                           {"SPHEROID", 2, K}, {"s", 3, Q},      {"1", 3, 0},     {"2", 3, 0},
                           {"UNIT", 1, K},   {"u", 2, Q},        {"3", 2, 0}};
  EXPECT_EQ(t.tokens(), want);
  EXPECT_EQ(t.list->err_number, 0);
  EXPECT_EQ(t.list->err_severity, 0);
}

TEST(WktTokenizer, RoundBracketsLowerCaseAndSpacingReadLikeTheCanonicalForm) {
  auto canonical = tokenize(R"(GEOGCS["n",DATUM["d",SPHEROID["s",1,2]]])");
  auto loose = tokenize("geogcs ( \"n\" ,\n\tdatum(\"d\", spheroid ( 'S' ,  1 , 2 ) ) )");
  ASSERT_EQ(canonical.result, 0);
  ASSERT_EQ(loose.result, 0);
  auto a = canonical.tokens();
  auto b = loose.tokens();
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    EXPECT_EQ(a[i].depth, b[i].depth) << i;
    EXPECT_EQ(a[i].flags, b[i].flags) << i;
    EXPECT_EQ(ko_strcmp_i(a[i].text.c_str(), b[i].text.c_str()), 0) << a[i] << " vs " << b[i];
  }
}

TEST(WktTokenizer, QuotedTextRules) {
  struct Case {
    const char *text;
    const char *name;
  } const cases[] = {
      {"A[\"  x\ty\n z  \"]", "x y  z"},        // leading and trailing blanks go, inner become spaces
      {"A['single']", "single"},                 // single quotes read like double ones
      {"A['say \"hi\" twice']", "say \"hi\" twice"},  // the other quote kind is a plain character
      {"A[\"say \"\"hi\"\"\"]", "say \"hi\""},   // doubled double quotes are one
      {"A[\"\"\"\"]", "\""},
      {"A[\"\"]", ""},
      {"A[\"a,b]c[d\"]", "a,b]c[d"},             // brackets and commas inside quotes are text
  };
  for (const Case &c : cases) {
    auto t = tokenize(c.text);
    ASSERT_EQ(t.result, 0) << c.text;
    ASSERT_EQ(t.list->count, 2) << c.text;
    EXPECT_STREQ(t.list->tokens[1].text, c.name) << c.text;
    EXPECT_EQ(t.list->tokens[1].flags, Q) << c.text;
  }
}

TEST(WktTokenizer, UnquotedWhiteSpaceIsDropped) {
  auto t = tokenize("A[ B C , 1 2 . 5 ]");
  ASSERT_EQ(t.result, 0);
  std::vector<Tok> want = {{"A", 0, K}, {"BC", 1, 0}, {"12.5", 1, 0}};
  EXPECT_EQ(t.tokens(), want);
}

TEST(WktTokenizer, EmptyNodesAndEmptyTokens) {
  auto t = tokenize(R"(A[B["x"],,C[],"y"])");
  ASSERT_EQ(t.result, 0);
  std::vector<Tok> want = {{"A", 0, K}, {"B", 1, K}, {"x", 2, Q}, {"C", 1, K}, {"y", 1, Q}};
  EXPECT_EQ(t.tokens(), want);
}

TEST(WktTokenizer, KeywordSearchSkipsLeadingTextAndFalseMatches) {
  // The first GEOGCS is inside a name and not followed by a bracket; the
  // text around the node is ignored.
  auto t = tokenize(R"(junk PROJCS["GEOGCS is here",GEOGCS["g",DATUM["d"]]] trailing ]]] text)", "GEOGCS");
  ASSERT_EQ(t.result, 0);
  std::vector<Tok> want = {{"GEOGCS", 0, K}, {"g", 1, Q}, {"DATUM", 1, K}, {"d", 2, Q}};
  EXPECT_EQ(t.tokens(), want);

  // Case-insensitive, then the alternate keyword.
  t = tokenize(R"(x ellipsoid("e",1,2))", "SPHEROID", "ELLIPSOID");
  ASSERT_EQ(t.result, 0);
  EXPECT_STREQ(t.list->tokens[0].text, "ellipsoid");

  // Letters, '_', '-' and blanks may follow the keyword before the bracket.
  t = tokenize(R"(UNIT_X - y ["m",1])", "UNIT");
  ASSERT_EQ(t.result, 0);
  EXPECT_STREQ(t.list->tokens[0].text, "UNIT_X-y");

  // Text after the outermost closing bracket is ignored.
  t = tokenize(R"(GEOGCS["a"]]],garbage[)");
  ASSERT_EQ(t.result, 0);
  EXPECT_EQ(t.list->count, 2);
}

struct ErrorCase {
  const char *text;
  const char *keyword;
  int number;
  int severity;
  const char *message;
};

TEST(WktTokenizer, ErrorsAreRecordedWithNumberSeverityAndArgument) {
  const ErrorCase cases[] = {
      {" \t\n ", nullptr, 457, KO_SEV_WARNING, ""},
      {"[GEOGCS]", nullptr, 463, KO_SEV_ERROR, ""},
      {"1A[2]", nullptr, 463, KO_SEV_ERROR, ""},
      {"DATUM[\"d\"]", "GEOGCS", 466, KO_SEV_ERROR, "GEOGCS"},
      {"A[B[1][2]]", nullptr, 458, KO_SEV_ERROR, ""},          // '[' after ']'
      {"A[B[1]C]", nullptr, 458, KO_SEV_ERROR, ""},            // a value after ']'
      {"A[\"x\"B]", nullptr, 458, KO_SEV_ERROR, ""},          // a value after a closing quote
      {"A[\"x\"[1]]", nullptr, 458, KO_SEV_ERROR, ""},        // a bracket after a closing quote
      {"A[x\"y\"]", nullptr, 458, KO_SEV_ERROR, ""},          // a quote inside a word
      {"A[,[1]]", nullptr, 458, KO_SEV_ERROR, ""},            // a bracket without keyword
      {"A[\"x]", nullptr, 469, KO_SEV_ERROR, ""},
      {"A['x\"]", nullptr, 469, KO_SEV_ERROR, ""},            // the other kind does not close
      {"A[B[1]", nullptr, 464, KO_SEV_WARNING, "1"},
      {"A[B[C[\"x\"", nullptr, 464, KO_SEV_WARNING, "3"},
  };
  for (const ErrorCase &c : cases) {
    auto t = tokenize(c.text, c.keyword);
    EXPECT_EQ(t.list->err_number, c.number) << c.text;
    EXPECT_EQ(t.list->err_severity, c.severity) << c.text;
    EXPECT_STREQ(t.list->err_message, c.message) << c.text;
    if (c.severity == KO_SEV_ERROR || c.number == 457) {
      EXPECT_EQ(t.result, c.number) << c.text;
      EXPECT_EQ(t.list->count, 0) << c.text;
    } else {
      EXPECT_EQ(t.result, 0) << c.text;  // missing brackets: the tokens still serve
      EXPECT_GT(t.list->count, 0) << c.text;
    }
  }
}

TEST(WktTokenizer, NullArguments) {
  auto list = std::make_unique<ko_wkt_tokens>();
  EXPECT_EQ(ko_wkt_str_to_tokens(nullptr, "A[1]", nullptr, nullptr), 456);
  EXPECT_EQ(ko_wkt_str_to_tokens(list.get(), nullptr, nullptr, nullptr), 456);
  EXPECT_EQ(list->count, 0);
}

TEST(WktTokenizer, LengthLimitIs4095NormalizedCharacters) {
  auto node = [](std::size_t total) { return "A[\"" + std::string(total - 5, 'x') + "\"]"; };
  auto ok = tokenize(node(KO_WKT_MAX_CHARS));
  EXPECT_EQ(ok.result, 0);
  EXPECT_EQ(std::string(ok.list->tokens[1].text).size(), static_cast<std::size_t>(KO_WKT_MAX_CHARS - 5));

  auto too_long = tokenize(node(KO_WKT_MAX_CHARS + 1));
  EXPECT_EQ(too_long.result, 467);
  EXPECT_EQ(too_long.list->err_severity, KO_SEV_ERROR);
  EXPECT_STREQ(too_long.list->err_message, "4095");

  // White space outside quotes is not copied, so it does not count.
  std::string spaced = node(KO_WKT_MAX_CHARS);
  spaced.insert(2, 500, ' ');
  EXPECT_EQ(tokenize(spaced).result, 0);
}

TEST(WktTokenizer, TokenLimitIs256) {
  auto node = [](int values) {
    std::string s = "A[";
    for (int i = 0; i < values; ++i) s += (i ? ",1" : "1");
    return s + "]";
  };
  auto ok = tokenize(node(KO_WKT_MAX_TOKENS - 1));
  EXPECT_EQ(ok.result, 0);
  EXPECT_EQ(ok.list->count, KO_WKT_MAX_TOKENS);

  auto over = tokenize(node(KO_WKT_MAX_TOKENS));
  EXPECT_EQ(over.result, 468);
  EXPECT_STREQ(over.list->err_message, "256, 257");
  EXPECT_EQ(over.list->count, 0);
}

TEST(WktTokenizer, DeepNestingStaysWithinTheLimits) {
  std::string deep;
  for (int i = 0; i < 250; ++i) deep += "A[";
  auto t = tokenize(deep);
  EXPECT_EQ(t.result, 0);
  EXPECT_EQ(t.list->err_number, 464);
  EXPECT_STREQ(t.list->err_message, "250");
  EXPECT_EQ(t.list->tokens[249].depth, 249);
}

// --- Pretty-printer -----------------------------------------------------------

using ko::test::kWgs84;

// The worked example of the format's description.
constexpr char kWgs84Expanded[] =
    "GEOGCS[\"GCS_WGS_1984\",\n"
    " DATUM[\"D_WGS_1984\",\n"
    "  SPHEROID[\"WGS_1984\", 6378137.0, 298.257223563]],\n"
    " PRIMEM[\"Greenwich\", 0.0],\n"
    " UNIT[\"Degree\", 0.0174532925199433]]";

TEST(WktExpand, WorkedExampleWithSpacesTabsAndPrefix) {
  char out[1024];
  EXPECT_EQ(ko_str_expand_wkt(kWgs84, "", KO_STR_EXPAND, sizeof out, out), 0);
  EXPECT_STREQ(out, kWgs84Expanded);

  EXPECT_EQ(ko_str_expand_wkt(kWgs84, "", KO_STR_EXPAND_TABS, sizeof out, out), 0);
  std::string tabs = kWgs84Expanded;
  for (std::size_t p = 0; (p = tabs.find("\n ", p)) != std::string::npos;) {
    ++p;
    while (tabs[p] == ' ') tabs[p++] = '\t';
  }
  EXPECT_EQ(out, tabs);

  EXPECT_EQ(ko_str_expand_wkt("A[\"x\",B[1],C[2]]", "> ", KO_STR_EXPAND, sizeof out, out), 0);
  EXPECT_STREQ(out, "> A[\"x\",\n>  B[1],\n>  C[2]]");
}

TEST(WktExpand, QuotesAreNotRecognised) {
  char out[256];
  ASSERT_EQ(ko_str_expand_wkt(R"(A["x,y",B["[z"]])", "", 0, sizeof out, out), 0);
  EXPECT_STREQ(out, "A[\"x, y\",\n B[\"[z\"]]");
}

TEST(WktExpand, InPlaceEqualsOutOfPlaceAlsoBeyondTheScratchSize) {
  std::string big = "A[\"n\"";
  while (big.size() < 6000) big += ",B[\"b\",1.5]";
  big += "]";
  std::vector<char> expected(20000);
  ASSERT_EQ(ko_str_expand_wkt(big.c_str(), "", KO_STR_EXPAND, 20000, expected.data()), 0);
  for (const std::string &input : {std::string(kWgs84), big}) {
    std::vector<char> separate(20000), in_place(20000);
    ASSERT_EQ(ko_str_expand_wkt(input.c_str(), "", KO_STR_EXPAND, 20000, separate.data()), 0);
    std::copy(input.begin(), input.end(), in_place.begin());
    ASSERT_EQ(ko_str_expand_wkt(in_place.data(), "", KO_STR_EXPAND, 20000, in_place.data()), 0);
    EXPECT_STREQ(in_place.data(), separate.data());
  }
}

TEST(WktExpand, BufferSizeRule) {
  const std::size_t n = std::string(kWgs84Expanded).size();
  std::vector<char> out(n + 1, 'z');
  EXPECT_EQ(ko_str_expand_wkt(kWgs84, "", KO_STR_EXPAND, static_cast<int>(n + 1), out.data()), 0);
  EXPECT_STREQ(out.data(), kWgs84Expanded);
  EXPECT_EQ(ko_str_expand_wkt(kWgs84, "", KO_STR_EXPAND, static_cast<int>(n), out.data()),
            static_cast<int>(n + 1));
  EXPECT_STREQ(out.data(), "");
  EXPECT_EQ(ko_str_expand_wkt(kWgs84, "", KO_STR_EXPAND, 0, nullptr), static_cast<int>(n + 1));
}

// --- Header and keyword type ----------------------------------------------------

TEST(WktHeader, KeywordInUpperCaseAndQuotedName) {
  char buf[64];
  EXPECT_EQ(ko_wkt_header(buf, "geogcs", "GCS_WGS_1984"), 6);
  EXPECT_STREQ(buf, "GEOGCS[\"GCS_WGS_1984\"");
  EXPECT_EQ(ko_wkt_header(buf, "Unit", nullptr), 4);
  EXPECT_STREQ(buf, "UNIT[");
}

TEST(WktObjectType, CaseInsensitivePrefixOfTheCoordinateSystemKeywords) {
  struct Case {
    const char *text;
    uint32_t type;
  } const cases[] = {
      {"GEOGCS[", KO_TYPE_GEOGCS},     {"projcs(", KO_TYPE_PROJCS},
      {"VertCS[", KO_TYPE_VERTCS},     {"GXYZCS[", KO_TYPE_GXYZCS},
      {"GEOGTRAN[", KO_TYPE_GEOGTRAN}, {"verttran[", KO_TYPE_VERTTRAN},
      {"DATUM[", 0},                   {"GEOG", 0},
      {"", 0},
  };
  for (const Case &c : cases) EXPECT_EQ(ko_wkt_object_type(c.text), c.type) << c.text;
  EXPECT_EQ(ko_wkt_object_type(nullptr), 0u);
}

}  // namespace
