// The methods' parameter defaults and validity checks: which parameters
// each method needs, the reports for missing, extra and unusable ones, and
// defaults under failing allocations.
#include "support/failing_alloc.h"
#include "transformations/method_parameters.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace {

using ko::ParmSet;

struct Slots {
  std::array<ko_parameter *, KO_PARM_COUNT> p{};
  ~Slots() {
    for (ko_parameter *q : p) ko_parameter_del(q);
  }
  void put(const char *name, double value) {
    const ko_parmlist_entry *row = ko_parmlist_from_name(name);
    ASSERT_NE(row, nullptr) << name;
    ko_parameter_del(p[row->index]);
    p[row->index] = ko_parameter_new(name, value);
  }
  void drop(const char *name) {
    const ko_parmlist_entry *row = ko_parmlist_from_name(name);
    p[row->index] = ko_parameter_del(p[row->index]);
  }
};

// The parameter names each set must produce, from the parameter list's own
// names (so a wrong slot or code shows as a wrong name).
struct Expect {
  ParmSet set;
  std::vector<std::string> names;
};
const Expect kExpected[] = {
    {ParmSet::kGeocentricTranslation,
     {"X_Axis_Translation", "Y_Axis_Translation", "Z_Axis_Translation"}},
    {ParmSet::kMolodensky, {"X_Axis_Translation", "Y_Axis_Translation", "Z_Axis_Translation"}},
    {ParmSet::kSevenParameter,
     {"X_Axis_Translation", "Y_Axis_Translation", "Z_Axis_Translation", "X_Axis_Rotation",
      "Y_Axis_Rotation", "Z_Axis_Rotation", "Scale_Difference"}},
    {ParmSet::kMolodenskyBadekas,
     {"X_Axis_Translation", "Y_Axis_Translation", "Z_Axis_Translation", "X_Axis_Rotation",
      "Y_Axis_Rotation", "Z_Axis_Rotation", "Scale_Difference", "X_Coordinate_of_Rotation_Origin",
      "Y_Coordinate_of_Rotation_Origin", "Z_Coordinate_of_Rotation_Origin"}},
    {ParmSet::kTimeBased,
     {"X_Axis_Translation", "Y_Axis_Translation", "Z_Axis_Translation", "X_Axis_Rotation",
      "Y_Axis_Rotation", "Z_Axis_Rotation", "Scale_Difference", "X_Axis_Translation_Rate",
      "Y_Axis_Translation_Rate", "Z_Axis_Translation_Rate", "X_Axis_Rotation_Rate",
      "Y_Axis_Rotation_Rate", "Z_Axis_Rotation_Rate", "Scale_Difference_Rate", "Reference_Time"}},
    {ParmSet::kOffset, {"Longitude_Offset", "Latitude_Offset"}},
    {ParmSet::kGrid, {"Dataset_"}},
    {ParmSet::kNone, {}},
};

TEST(MethodParameters, DefaultsFillTheMethodsSlots) {
  for (const Expect &e : kExpected) {
    Slots s;
    ASSERT_EQ(ko::method_defaults(e.set, s.p.data()), static_cast<int>(e.names.size()));
    int filled = 0;
    for (ko_parameter *q : s.p) filled += q != nullptr;
    EXPECT_EQ(filled, static_cast<int>(e.names.size()));
    for (const std::string &name : e.names) {
      const ko_parmlist_entry *row = ko_parmlist_from_name(name.c_str());
      ASSERT_NE(row, nullptr) << name;
      ko_parameter *q = s.p[row->index];
      ASSERT_NE(q, nullptr) << name;
      EXPECT_STREQ(ko_header_get_name(q), row->name);
      EXPECT_EQ(ko_parameter_value(q), row->dflt);
    }
  }
}

TEST(MethodParameters, DefaultsAreValidExceptTheGridFileName) {
  for (const Expect &e : kExpected) {
    Slots s;
    ko::method_defaults(e.set, s.p.data());
    ko_err err{};
    ko_err_clear(&err);
    EXPECT_EQ(ko::method_valid(e.set, s.p.data(), "T", &err), e.set == ParmSet::kGrid ? 0 : 1);
    if (e.set == ParmSet::kGrid) {
      EXPECT_EQ(err.number, 347);
      EXPECT_STREQ(err.message, "Dataset_");
    } else {
      EXPECT_EQ(err.severity, KO_SEV_NONE) << err.number << " " << err.message;
    }
  }
}

TEST(MethodParameters, EachMissingParameterIsReportedWithItsName) {
  for (const Expect &e : kExpected) {
    for (const std::string &name : e.names) {
      Slots s;
      ko::method_defaults(e.set, s.p.data());
      if (e.set == ParmSet::kGrid) s.put("Dataset_conus", 0);
      s.drop(name.c_str());
      ko_err err{};
      ko_err_clear(&err);
      const int valid = ko::method_valid(e.set, s.p.data(), "My transformation", &err);
      EXPECT_EQ(err.number, 347) << name;
      EXPECT_EQ(err.category, KO_ERRCAT_ARGUMENT) << name;
      EXPECT_STREQ(err.source, "My transformation");
      EXPECT_STREQ(err.message, name == "Dataset_" ? "Dataset_" : name.c_str());
      // Rates (and either offset alone) may be missing: a warning.
      const bool optional = name.find("_Rate") != std::string::npos || e.set == ParmSet::kOffset;
      EXPECT_EQ(err.severity, optional ? KO_SEV_WARNING : KO_SEV_ERROR) << name;
      EXPECT_EQ(valid, optional ? 1 : 0) << name;
    }
  }
}

TEST(MethodParameters, BothOffsetsMissingIsAnError) {
  Slots s;
  ko_err err{};
  ko_err_clear(&err);
  EXPECT_EQ(ko::method_valid(ParmSet::kOffset, s.p.data(), "T", &err), 0);
  EXPECT_EQ(err.severity, KO_SEV_ERROR);
  EXPECT_EQ(err.number, 347);
}

TEST(MethodParameters, ExtraAndMisplacedParametersAreWarnings) {
  Slots s;
  ko::method_defaults(ParmSet::kGeocentricTranslation, s.p.data());
  s.put("X_Axis_Rotation", 1.0);  // Geocentric_Translation reads no rotation
  ko_err err{};
  ko_err_clear(&err);
  EXPECT_EQ(ko::method_valid(ParmSet::kGeocentricTranslation, s.p.data(), "T", &err), 1);
  EXPECT_EQ(err.number, 348);
  EXPECT_EQ(err.severity, KO_SEV_WARNING);
  EXPECT_STREQ(err.message, "X_Axis_Rotation");

  // A rotation origin where the time-based method reads a rate: the rate
  // is missing (warning) and the origin is extra (warning).
  Slots t;
  ko::method_defaults(ParmSet::kTimeBased, t.p.data());
  t.put("X_Coordinate_of_Rotation_Origin", 5.0);
  ko_err_clear(&err);
  EXPECT_EQ(ko::method_valid(ParmSet::kTimeBased, t.p.data(), "T", &err), 1);
  EXPECT_EQ(err.severity, KO_SEV_WARNING);
}

TEST(MethodParameters, UnusableValuesAndArguments) {
  Slots s;
  ko::method_defaults(ParmSet::kSevenParameter, s.p.data());
  ko_parameter_value_set_si(s.p[ko::kSlotScale], -1.0);
  ko_err err{};
  ko_err_clear(&err);
  EXPECT_EQ(ko::method_valid(ParmSet::kSevenParameter, s.p.data(), "T", &err), 0);
  EXPECT_EQ(err.number, 356);
  ko_err_clear(&err);
  EXPECT_EQ(ko::method_valid(ParmSet::kSevenParameter, nullptr, "T", &err), 0);
  EXPECT_EQ(err.number, 330);
  EXPECT_EQ(ko::method_valid(ParmSet::kNone, nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(ko::method_valid(ParmSet::kSevenParameter, s.p.data(), nullptr, nullptr), 0);
  EXPECT_EQ(ko::method_defaults(ParmSet::kSevenParameter, nullptr), -1);
}

TEST(MethodParameters, DefaultsLeaveNothingWhenAllocationsFail) {
  ASSERT_TRUE(ko::test::installed());
  for (const Expect &e : kExpected) {
    if (e.names.empty()) continue;
    const long n = ko::test::sweep_failures([&] {
      Slots s;
      const int made = ko::method_defaults(e.set, s.p.data());
      if (made < 0) {
        for (ko_parameter *q : s.p) EXPECT_EQ(q, nullptr);
      }
      return made > 0;
    });
    EXPECT_GT(n, 0);
  }
}

}  // namespace
