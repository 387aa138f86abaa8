// Epochs: the year's range, equality, clone and clean failures.
#include "ko.h"
#include "objects/systems_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::Report;

constexpr const char *kSource = "ko_epoch_new_errext";

TEST(Epoch, YearRange) {
  struct Case {
    double year;
    const char *message;  // null: accepted; else the year as ko_dtoa writes it
  } cases[] = {
      {2010.5, nullptr},       {0.0, nullptr}, {9999.0, nullptr},
      {1989.0, nullptr},       {-0.5, "-0.5"}, {9999.000001, "9999.000001"},
      {1e10, "10000000000.0"}, {NAN, "NaN"},   {INFINITY, "Inf"},
      {-INFINITY, "Inf"},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.year);
    ko_err err = ko::test::stale_record();
    ko_epoch *e = ko_epoch_new_errext(c.year, &err);
    if (c.message == nullptr) {
      ASSERT_NE(e, nullptr);
      expect_no_report(err);
      EXPECT_EQ(ko_epoch_year(e), c.year);
      EXPECT_EQ(ko_epoch_type(e), KO_TYPE_EPOCH);
      EXPECT_EQ(ko_header_get_name(e)[0], '\0') << "an epoch has no name";
      ko_epoch_del(e);
    } else {
      EXPECT_EQ(e, nullptr);
      expect_report(err, Report{4, 8, 355, kSource, c.message});
    }
  }
}

TEST(Epoch, EqualityAndClone) {
  ko_epoch *a = ko_epoch_new(2010.0);
  ko_epoch *b = ko_epoch_new(2010.0 + 1e-13);
  ko_epoch *c = ko_epoch_new(2010.001);
  EXPECT_EQ(ko_epoch_eq(a, b), 1) << "within the relative tolerance";
  EXPECT_EQ(ko_epoch_eq(a, c), 0);
  ko_epoch *d = static_cast<ko_epoch *>(ko_object_clone(c));
  ASSERT_NE(d, nullptr);
  EXPECT_NE(d, c);
  EXPECT_EQ(ko_object_eq(d, c), 1);
  EXPECT_EQ(ko_epoch_year(d), 2010.001);
  for (ko_epoch *e : {a, b, c, d}) ko_epoch_del(e);
}

TEST(EpochNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *e = static_cast<ko_epoch *>(p);
    EXPECT_EQ(ko_epoch_p(e), 0);
    EXPECT_EQ(ko_epoch_year(e), 0.0);
    EXPECT_EQ(ko_epoch_type(e), 0u);
    EXPECT_EQ(ko_epoch_clone(e), nullptr);
    EXPECT_EQ(ko_epoch_eq(e, e), 0);
    EXPECT_EQ(ko_epoch_del(e), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_object_vector(KO_TYPE_EPOCH), &ko_epoch_objvec);
}

TEST(EpochMemory, ConstructorAndCloneCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  EXPECT_GE(ko::test::sweep_failures([] {
              ko_err err{};
              ko_epoch *e = ko_epoch_new_errext(2005.0, &err);
              if (e == nullptr) {
                // Without a name the message is the table text.
                expect_report(err, Report{4, 1, 1, kSource, "No memory"});
                return false;
              }
              ko_epoch_del(e);
              return true;
            }),
            1);
  ko_epoch *src = ko_epoch_new(1997.0);
  EXPECT_GE(ko::test::clone_sweep(src, ko_epoch_clone, ko_epoch_del), 1);
  ko_epoch_del(src);
}

}  // namespace
