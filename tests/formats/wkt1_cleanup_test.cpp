// A failed read leaves nothing behind: every allocation made on the way is
// failed in turn, and damaged texts of every kind are read; the failing
// allocator counts what stays allocated (and the sanitizer build checks
// every access).  Oversized inputs are refused quickly.
#include "ko.h"
#include "formats/wkt_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <string>

namespace {

using ko::test::Obj;
using ko::test::write_text;

const std::string kGcs3 =
    R"(GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563,)"
    R"(DISPNAME["s"],AUTHORITY["EPSG",7030]],DISPNAME["d"],AUTHORITY["EPSG",6326]],)"
    R"(PRIMEM["Paris",2.5969213,UNIT["Grad",0.01570796326794897],AUTHORITY["EPSG",8903]],)"
    R"(UNIT["Degree",0.0174532925199433,AUTHORITY["EPSG",9102]],LINUNIT["Meter",1.0],)"
    R"(METADATA["World",-180.0,-90.0,180.0,90.0,0.0,0.0,1262],METADATA["Europe",-10,35,40,71,0,0,1298],)"
    R"(DISPNAME["g"],AUTHORITY["EPSG",4979]])";

const std::string kProjcs3 =
    R"(PROJCS["p",)" + kGcs3 +
    R"(,PROJECTION["Transverse_Mercator",AUTHORITY["EPSG",9807]],PARAMETER["False_Easting",500000.0],)"
    R"(PARAMETER["False_Northing",0.0],PARAMETER["Central_Meridian",15.0],PARAMETER["Scale_Factor",0.9996],)"
    R"(PARAMETER["Latitude_Of_Origin",0.0],UNIT["Meter",1.0],LINUNIT["Meter",1.0],)"
    R"(METADATA["Zone",12,0,18,84,0,0,1],AUTHORITY["EPSG",32633]])";

const std::string kGcs2 =
    R"(GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563]],)"
    R"(PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]])";
const std::string kGeogtran =
    R"(GEOGTRAN["t",)" + kGcs2 + "," + kGcs2 +
    R"(,METHOD["Coordinate_Frame"],PARAMETER["X_Axis_Translation",-87.0],PARAMETER["Y_Axis_Translation",-98.0],)"
    R"(PARAMETER["Z_Axis_Translation",-121.0],PARAMETER["X_Axis_Rotation",0.1],PARAMETER["Y_Axis_Rotation",0.2],)"
    R"(PARAMETER["Z_Axis_Rotation",0.3],PARAMETER["Scale_Difference",1.5],OPERATIONACCURACY[2.0],)"
    R"(METADATA["m",1,2,3,4,0,0,7],DISPNAME["t"],AUTHORITY["EPSG",1311]])";

const std::string kNavd88 =
    R"(VERTCS["NAVD88",VDATUM["North_American_Vertical_Datum_1988",AUTHORITY["EPSG",5103]],)"
    R"(PARAMETER["Vertical_Shift",0.5],PARAMETER["Direction",1.0],UNIT["Foot_US",0.3048006096012192],)"
    R"(METADATA["US",-125,24,-66,50,0,0,1323],AUTHORITY["EPSG",5703]])";
const std::string kCompound =
    R"(HVCOORDSYS["c",PROJCS["p",)" + kGcs2 +
    R"(,PROJECTION["Transverse_Mercator"],PARAMETER["False_Easting",500000.0],PARAMETER["Central_Meridian",15.0],)"
    R"(PARAMETER["Scale_Factor",0.9996],UNIT["Meter",1.0],AUTHORITY["EPSG",32633]],)" + kNavd88 + "]";
const std::string kVerttran =
    R"(VERTTRAN["v",)" + kGcs2 + "," + kNavd88 + "," + kNavd88 +
    R"(,VTMETHOD["Vertical_Offset"],PARAMETER["Vertical_Offset",0.5],OPERATIONACCURACY[0.1],)"
    R"(METADATA["m",1,2,3,4,0,0,7],AUTHORITY["EPSG",7777]])";
const std::string kAdjusted =
    R"(ADJHCS["a",)" + kGcs2 +
    R"(,HTMETHOD["Similarity"],ARRAY["a",4,0.001,0.002,0.99,0.01,UNIT["Degree",0.0174532925199433]],DISPNAME["adj"]])";

const std::string kSmall[] = {
    R"(GXYZCS["g",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563]],PRIMEM["Greenwich",0.0],UNIT["Meter",1.0]])",
    R"(EPOCH[2010.5])",
    R"(UNIT["Foot_US",0.3048006096012192,"US survey foot","US survey feet","ftUS",AUTHORITY["EPSG",9003]])",
    R"(AREAUNIT["Hectare",10000.0,DISPNAME["ha"]])",
    R"(PARAMETER["False_Easting",1.0,DISPNAME["FE"],AUTHORITY["EPSG",8806]])",
    R"(METHOD["NTv2",AUTHORITY["EPSG",9615]])",
    R"(AUTHORITY["EPSG",4326,"10.0"])",
    R"(DISPNAME["x"])",
};

// Every allocation of a read failed in turn; the record then tells of
// memory, and nothing stays allocated.
void sweep(const std::string &text) {
  long made = ko::test::sweep_failures([&] {
    ko_err err{};
    void *obj = ko_object_from_string_errext(text.c_str(), &err);
    if (obj == nullptr) {
      EXPECT_EQ(err.number, 1) << err.source << " " << err.message;
      EXPECT_EQ(err.category, KO_ERRCAT_MEMORY);
      return false;
    }
    ko_object_del(obj);
    return true;
  });
  EXPECT_GT(made, 0) << text;  // -1: a failed read leaked
}

TEST(Wkt1Cleanup, EveryFailedAllocationIsCleanedUp) {
  ASSERT_TRUE(ko::test::installed());
  sweep(kGcs3);
  sweep(kProjcs3);
  sweep(kGeogtran);
  sweep(kCompound);
  sweep(kVerttran);
  sweep(kAdjusted);
  for (const std::string &text : kSmall) sweep(text);
}

TEST(Wkt1Cleanup, WritersAllocateNothingExceptToMeasureExpandedText) {
  ASSERT_TRUE(ko::test::installed());
  auto r = ko::test::read_text(kProjcs3);
  ASSERT_NE(r.obj, nullptr) << r.err.number;
  std::string expected = write_text(r.obj.get(), KO_STR_AUTH_ALL | KO_STR_DISP_ALL);
  ko::test::fail_after(0);
  char buf[KO_STR_BUFFER_SIZE];
  int result = ko_object_to_string_len(r.obj.get(), KO_STR_AUTH_ALL | KO_STR_DISP_ALL, sizeof buf, buf);
  int small = ko_object_to_string_len(r.obj.get(), KO_STR_EXPAND, 10, buf);
  ko::test::never_fail();
  EXPECT_EQ(result, 0);
  EXPECT_EQ(std::string(buf), "");  // the small call emptied it
  EXPECT_GT(small, 10);             // no memory to measure: the plain length
  EXPECT_EQ(ko_object_to_string_len(r.obj.get(), KO_STR_AUTH_ALL | KO_STR_DISP_ALL, sizeof buf, buf), 0);
  EXPECT_EQ(std::string(buf), expected);
}

// Variants of a text: every prefix, every character left out, every
// character replaced by one of the format's significant characters.
std::vector<std::string> damaged(const std::string &text) {
  std::vector<std::string> out;
  const char replacements[] = {'[', ']', '(', ',', '"', '\'', 'x', '9', ' '};
  for (std::size_t i = 0; i < text.size(); ++i) {
    out.push_back(text.substr(0, i));
    out.push_back(text.substr(0, i) + text.substr(i + 1));
    for (char c : replacements) {
      if (text[i] == c) continue;
      std::string v = text;
      v[i] = c;
      out.push_back(v);
    }
  }
  return out;
}

TEST(Wkt1Cleanup, DamagedTextsFailCleanlyOrReadIntoWritableObjects) {
  ASSERT_TRUE(ko::test::installed());
  std::map<int, int> numbers;
  for (const std::string &text : {kGcs3, kProjcs3, kGeogtran, kCompound}) {
    for (const std::string &variant : damaged(text)) {
      long before = ko::test::live_allocations();
      ko_err err{};
      Obj obj(ko_object_from_string_errext(variant.c_str(), &err));
      if (obj == nullptr) {
        EXPECT_EQ(err.severity, KO_SEV_ERROR) << variant;
        ++numbers[err.number];
      } else {
        // What was read can be written, and that text reads again.
        std::string again = write_text(obj.get(), KO_STR_AUTH_ALL | KO_STR_DISP_ALL | KO_STR_HIDDEN);
        Obj reread(ko_object_from_string(again.c_str()));
        EXPECT_NE(reread, nullptr) << variant << "\n -> " << again;
        ++numbers[0];
      }
      obj.reset();
      ASSERT_EQ(ko::test::live_allocations(), before) << variant;
    }
  }
  // The damage reaches the tokenizer, the structure and the values.
  for (int number : {0, 458, 463, 469, 475}) EXPECT_GT(numbers[number], 0) << number;
  EXPECT_GT(numbers.size(), 15u);
}

TEST(Wkt1Cleanup, OversizedInputsAreRefusedQuickly) {
  using Clock = std::chrono::steady_clock;
  struct Case {
    std::string text;
    int number;
  };
  std::string megabyte_name = R"(GEOGCS[")" + std::string(1 << 20, 'n') + R"("])";
  std::string megabyte_words;
  while (megabyte_words.size() < (1u << 20)) megabyte_words += "GEOGCS";
  megabyte_words += "[\"x\"]";
  std::string nested;
  for (int i = 0; i < 100000; ++i) nested += "A[";
  std::string flat = "GEOGCS" + std::string(100000, '[');
  std::string closing = R"(GEOGCS["x"])" + std::string(100000, ']');
  std::string spaces = std::string(1 << 20, ' ') + "x";
  const Case cases[] = {
      {megabyte_name, 467}, {megabyte_words, 467}, {nested, 463},
      {flat, 458},          {closing, 431},        {spaces, 463},
  };
  for (const Case &c : cases) {
    auto start = Clock::now();
    ko_err err{};
    Obj obj(ko_object_from_string_errext(c.text.c_str(), &err));
    double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    EXPECT_EQ(obj, nullptr);
    EXPECT_EQ(err.number, c.number) << c.text.substr(0, 40);
    EXPECT_LT(seconds, 0.5) << c.text.substr(0, 40);
    // The typed readers search their keyword through the whole text.
    start = Clock::now();
    Obj typed(ko_wkt_geogcs_from_str(c.text.c_str(), nullptr, &err));
    seconds = std::chrono::duration<double>(Clock::now() - start).count();
    EXPECT_EQ(typed, nullptr);
    EXPECT_LT(seconds, 0.5) << c.text.substr(0, 40);
  }
}

}  // namespace
