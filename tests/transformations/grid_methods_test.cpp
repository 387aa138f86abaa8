// The grid methods' constants loader and unloader, usability check and file
// names over the data directory, with every format; loading under failing
// allocations.
#include "support/failing_alloc.h"
#include "tests/transformations/grid_writer.h"
#include "tests/transformations/oracle.h"
#include "transformations/grid_methods.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <string>

namespace {

using ko::test::kDeg;

// A data directory with one small grid per format, installed for the test
// and removed afterwards.
class DataDir : public ::testing::Test {
 protected:
  void SetUp() override {
    namespace fs = std::filesystem;
    for (const char *sub : {"ntv2", "nadcon", "nadcon5", "geocon"})
      fs::create_directories(fs::path(dir_.dir()) / sub);
    ko::test::NtSub grid{"G", "NONE", 45 * 3600.0, 47 * 3600.0, -12 * 3600.0, -10 * 3600.0,
                         1800, 1800, [](int r, int c, int k) { return k == 0 ? 1.0f + r : -2.0f + c; }};
    dir_.write("ntv2/two.gsb", ko::test::ntv2_bytes({grid}));
    ko::test::NadconGrid las{24, 3, -100.0f, 0.25f, 35.0f, 0.25f,
                             [](int r, int c) { return 0.5f + 0.1f * r + 0.01f * c; }};
    ko::test::NadconGrid los = las;
    los.value = [](int, int c) { return -0.25f * c; };
    dir_.write("nadcon/conus.las", ko::test::nadcon_bytes(las));
    dir_.write("nadcon/conus.los", ko::test::nadcon_bytes(los));
    ko::test::BGrid b{40.0, 250.0, 0.5, 0.5, 3, 3, 1, [](int r, int c) { return 0.1f * r + 0.2f * c; }};
    for (const char *kind : {"lat", "lon", "eht"})
      dir_.write(std::string("nadcon5/n5.") + kind + ".trn.b", ko::test::noaa_b_bytes(b));
    dir_.write("geocon/dslat_x.b", ko::test::noaa_b_bytes(b));
    dir_.write("geocon/dslon_x.b", ko::test::noaa_b_bytes(b));
    ko_datadir_set(dir_.dir().c_str());
  }
  void TearDown() override { ko_datadir_set(nullptr); }

  std::string path(const std::string &rel) const { return dir_.dir() + "/" + rel; }

  ko::test::TempDir dir_;
};

struct Slots {
  std::array<ko_parameter *, KO_PARM_COUNT> p{};
  explicit Slots(const char *dataset) {
    if (dataset != nullptr) p[ko::kSlotDataset] = ko_parameter_new(dataset, 0.0);
  }
  ~Slots() {
    for (ko_parameter *q : p) ko_parameter_del(q);
  }
};

struct Case {
  const ko::GridFormatSpec *format;
  const char *dataset;
  ko_gcs_extent extent;
};

TEST_F(DataDir, EveryFormatLoadsShiftsAndUnloads) {
  const Case cases[] = {
      {&ko::kNtv2Format, "Dataset_two", {10, 45, 12, 47, 0.5, 0.5}},
      {&ko::kNtv2Format, "Dataset_two.gsb", {10, 45, 12, 47, 0.5, 0.5}},
      {&ko::kNadconFormat, "Dataset_conus", {-100, 35, -94.25, 35.5, 0.25, 0.25}},
      {&ko::kNadconFormat, "Dataset_conus.los", {-100, 35, -94.25, 35.5, 0.25, 0.25}},
      {&ko::kNadcon5Format, "Dataset_n5.lat.trn.b", {-110, 40, -109, 41, 0.5, 0.5}},
      {&ko::kGeoconFormat, "Dataset_dslat_x.b", {-110, 40, -109, 41, 0.5, 0.5}},
  };
  for (const Case &c : cases) {
    Slots parms(c.dataset);
    ko_constants *k = ko_constants_new();
    ASSERT_EQ(ko::grid_load(*c.format, k, parms.p.data(), 1, nullptr), 1) << c.dataset;
    EXPECT_TRUE(ko_gcs_extent_eq(ko_constants_extent(k), &c.extent)) << c.dataset;
    ko::MethodArgs args;
    args.data = ko_constants_data(k);
    const ko_gcs_extent &e = c.extent;
    double pt[2] = {(e.west + e.east) / 2 * kDeg, (e.south + e.north) / 2 * kDeg};
    EXPECT_EQ(ko::grid_shift_forward(args, 1, pt, nullptr), 1) << c.dataset;
    ko::grid_unload(k);
    EXPECT_EQ(ko_constants_data(k), nullptr);
    ko_constants_del(k);
  }
}

TEST_F(DataDir, Nadcon5HeightGridIsUsedWhenPresent) {
  Slots with("Dataset_n5.lat.trn.b"), without("Dataset_dslat_x.b");
  ko_constants *a = ko_constants_new(), *b = ko_constants_new();
  ASSERT_EQ(ko::grid_load(ko::kNadcon5Format, a, with.p.data(), 1, nullptr), 1);
  ASSERT_EQ(ko::grid_load(ko::kGeoconFormat, b, without.p.data(), 1, nullptr), 1);
  EXPECT_EQ(static_cast<ko::GridSet *>(ko_constants_data(a))->components, 3);
  EXPECT_EQ(static_cast<ko::GridSet *>(ko_constants_data(b))->components, 2);
  ko::grid_unload(a);
  ko::grid_unload(b);
  ko_constants_del(a);
  ko_constants_del(b);
}

TEST_F(DataDir, LoaderFailsFinallyOnMissingFilesOrParameters) {
  const struct {
    const ko::GridFormatSpec *format;
    const char *dataset;
  } cases[] = {
      {&ko::kNtv2Format, "Dataset_absent"},
      {&ko::kNtv2Format, "Dataset_"},
      {&ko::kNtv2Format, nullptr},
      {&ko::kNadconFormat, "Dataset_two"},        // an NTv2 file is no NADCON pair
      {&ko::kNadcon5Format, "Dataset_conus"},
      {&ko::kGeoconFormat, "Dataset_n5.lat.trn.b"},  // in another folder
  };
  for (const auto &c : cases) {
    Slots parms(c.dataset);
    ko_constants *k = ko_constants_new();
    EXPECT_EQ(ko::grid_load(*c.format, k, parms.p.data(), 1, nullptr), -1)
        << (c.dataset ? c.dataset : "(none)");
    EXPECT_EQ(ko_constants_data(k), nullptr);
    ko_constants_del(k);
  }
  // A parameter in slot 15 that is not Dataset_.
  Slots wrong(nullptr);
  wrong.p[ko::kSlotDataset] = ko_parameter_new("X_Axis_Translation", 1.0);
  ko_constants *k = ko_constants_new();
  EXPECT_EQ(ko::grid_load(ko::kNtv2Format, k, wrong.p.data(), 1, nullptr), -1);
  EXPECT_EQ(ko::grid_load(ko::kNtv2Format, k, nullptr, 1, nullptr), -1);
  EXPECT_EQ(ko::grid_load(ko::kNtv2Format, nullptr, wrong.p.data(), 1, nullptr), -1);
  ko::grid_unload(nullptr);
  ko_constants_del(k);
}

TEST_F(DataDir, WithoutDataDirectoryOnlyAbsolutePathsLoad) {
  ko_datadir_set(nullptr);
  unsetenv("KODATA");
  EXPECT_EQ(ko::grid_usable(ko::kNtv2Format, "Dataset_two"), 0);
  EXPECT_EQ(ko::grid_usable(ko::kNtv2Format, ("Dataset_" + path("ntv2/two.gsb")).c_str()), 1);
}

TEST_F(DataDir, UsabilityNeedsEveryRequiredFile) {
  EXPECT_EQ(ko::grid_usable(ko::kNtv2Format, "Dataset_two"), 1);
  EXPECT_EQ(ko::grid_usable(ko::kNtv2Format, "two"), 1);  // the prefix is optional
  EXPECT_EQ(ko::grid_usable(ko::kNtv2Format, "Dataset_three"), 0);
  EXPECT_EQ(ko::grid_usable(ko::kNtv2Format, ""), 0);
  EXPECT_EQ(ko::grid_usable(ko::kNtv2Format, nullptr), 0);
  EXPECT_EQ(ko::grid_usable(ko::kNadconFormat, "Dataset_conus"), 1);
  std::filesystem::remove(path("nadcon/conus.los"));
  EXPECT_EQ(ko::grid_usable(ko::kNadconFormat, "Dataset_conus"), 0);
  EXPECT_EQ(ko::grid_usable(ko::kNadcon5Format, "Dataset_n5.lat.trn.b"), 1);
  EXPECT_EQ(ko::grid_usable(ko::kGeoconFormat, "Dataset_dslat_x.b"), 1);  // no height grid
  EXPECT_EQ(ko::grid_usable(ko::kGeoconFormat, "Dataset_dslat_y.b"), 0);
}

TEST_F(DataDir, FileNamesPerFormat) {
  char buf[4096];
  struct {
    const ko::GridFormatSpec *format;
    const char *dataset;
    std::string want;
    int count;
  } cases[] = {
      {&ko::kNtv2Format, "Dataset_two", path("ntv2/two.gsb"), 1},
      {&ko::kNtv2Format, "Dataset_sub/a.GSB", path("ntv2/sub/a.GSB"), 1},
      {&ko::kNtv2Format, "Dataset_/abs/grid", "/abs/grid.gsb", 1},
      {&ko::kNadconFormat, "Dataset_conus", path("nadcon/conus.las") + "\n" + path("nadcon/conus.los"), 2},
      {&ko::kNadconFormat, "Dataset_wohpgn.LAS", path("nadcon/wohpgn.las") + "\n" + path("nadcon/wohpgn.los"), 2},
      {&ko::kNadcon5Format, "Dataset_n5.nad27.lat.trn.b",
       path("nadcon5/n5.nad27.lat.trn.b") + "\n" + path("nadcon5/n5.nad27.lon.trn.b") + "\n" +
           path("nadcon5/n5.nad27.eht.trn.b"),
       3},
      {&ko::kGeoconFormat, "Dataset_region",
       path("geocon/region.lat.b") + "\n" + path("geocon/region.lon.b") + "\n" + path("geocon/region.eht.b"),
       3},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(ko::grid_filenames(*c.format, c.dataset, buf, sizeof buf), c.count) << c.dataset;
    EXPECT_EQ(std::string(buf), c.want) << c.dataset;
  }
  EXPECT_EQ(ko::grid_filenames(ko::kNtv2Format, "Dataset_", buf, sizeof buf), 0);
  EXPECT_STREQ(buf, "");
  // Too small a buffer: -1 and emptied, for the exact fit minus one.
  const int need = static_cast<int>(path("ntv2/two.gsb").size()) + 1;
  EXPECT_EQ(ko::grid_filenames(ko::kNtv2Format, "Dataset_two", buf, need), 1);
  EXPECT_EQ(ko::grid_filenames(ko::kNtv2Format, "Dataset_two", buf, need - 1), -1);
  EXPECT_STREQ(buf, "");
  EXPECT_EQ(ko::grid_filenames(ko::kNtv2Format, "Dataset_two", nullptr, 10), -1);
  // A name too long for a path fails instead of being cut.
  const std::string long_name = "Dataset_" + std::string(2000, 'x');
  EXPECT_EQ(ko::grid_filenames(ko::kNtv2Format, long_name.c_str(), buf, sizeof buf), 0);
}

TEST_F(DataDir, LoadingLeaksNothingWhenAllocationsFail) {
  ASSERT_TRUE(ko::test::installed());
  for (const Case &c : {Case{&ko::kNtv2Format, "Dataset_two", {}},
                        Case{&ko::kNadconFormat, "Dataset_conus", {}},
                        Case{&ko::kNadcon5Format, "Dataset_n5.lat.trn.b", {}}}) {
    Slots parms(c.dataset);
    const long n = ko::test::sweep_failures([&] {
      ko_constants *k = ko_constants_new();
      if (k == nullptr) return false;
      const int status = ko::grid_load(*c.format, k, parms.p.data(), 1, nullptr);
      ko::grid_unload(k);
      ko_constants_del(k);
      return status == 1;
    });
    EXPECT_GT(n, 1) << c.dataset;
  }
}

}  // namespace
