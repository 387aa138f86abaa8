// Arrays: the count, values and unit checks, equality, deep clones and
// clean failures.
#include "ko.h"
#include "objects/systems_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::name_of;
using ko::test::Report;

constexpr const char *kSource = "ko_array_new_errext";

TEST(Array, CopiesTheValues) {
  double values[] = {1.5, -2.25, 3e-7};
  ko_linunit *m = ko_linunit_new_code(9001);
  ko_err err = ko::test::stale_record();
  ko_array *a =
      ko_array_new_errext("Coefficients", 3, values, reinterpret_cast<ko_unit *>(m), &err);
  ASSERT_NE(a, nullptr);
  expect_no_report(err);
  values[0] = 99.0;
  EXPECT_EQ(ko_array_type(a), KO_TYPE_ARRAY);
  EXPECT_EQ(ko_array_num_values(a), 3);
  EXPECT_EQ(ko_array_value(a, 0), 1.5);
  EXPECT_EQ(ko_array_values(a)[1], -2.25);
  EXPECT_EQ(ko_array_value(a, 2), 3e-7);
  EXPECT_EQ(ko_array_value(a, 3), 0.0);
  EXPECT_EQ(ko_array_value(a, -1), 0.0);
  EXPECT_EQ(ko_array_unit(a), reinterpret_cast<ko_unit *>(m));
  ko_array_del(a);

  // No name, no unit; an area unit is a unit too.
  a = ko_array_new(nullptr, 1, values, nullptr);
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(name_of(a), "");
  EXPECT_EQ(ko_array_unit(a), nullptr);
  ko_array_del(a);
  a = ko_array_new("Areas", 1, values, reinterpret_cast<ko_unit *>(ko_areaunit_new_code(109401)));
  ASSERT_NE(a, nullptr);
  ko_array *c = ko_array_clone(a);
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(ko_object_type(ko_array_unit(c)), KO_TYPE_AREAUNIT);
  EXPECT_EQ(ko_array_eq(a, c), 1);
  ko_array_del(a);
  ko_array_del(c);
}

TEST(Array, ArgumentChecks) {
  const double good[] = {1.0, 2.0};
  const double with_nan[] = {1.0, NAN};
  const double with_inf[] = {-INFINITY, 1.0};
  struct Case {
    const char *label;
    int count;
    const double *values;
    bool bad_unit;
    int number;
    std::string message;
  } cases[] = {
      {"zero count", 0, good, false, 310, "Invalid num_values argument for array: A: 0"},
      {"negative count", -2, good, false, 310, "Invalid num_values argument for array: A: -2"},
      {"count too large", KO_ARRAY_MAX_VALUES + 1, good, false, 310,
       "Invalid num_values argument for array: A: " + std::to_string(KO_ARRAY_MAX_VALUES + 1)},
      {"no values", 2, nullptr, false, 326, "A"},
      {"a datum for a unit", 2, good, true, 324, "A"},
      {"NaN", 2, with_nan, false, 358, "NaN or Infinity encountered: A: nan"},
      {"infinity", 2, with_inf, false, 358, "NaN or Infinity encountered: A: -inf"},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.label);
    ko_datum *d = ko::test::wgs84_datum();
    ko_err err{};
    EXPECT_EQ(ko_array_new_errext("A", c.count, c.values,
                                  c.bad_unit ? reinterpret_cast<ko_unit *>(d) : nullptr, &err),
              nullptr);
    expect_report(err, Report{4, 8, c.number, kSource, c.message.c_str()});
    EXPECT_EQ(ko_datum_p(d), 1);
    ko_datum_del(d);
  }
  std::string long_name(100, 'a');
  ko_err err{};
  ko_array *a = ko_array_new_errext(long_name.c_str(), 2, good, nullptr, &err);
  ASSERT_NE(a, nullptr);
  expect_report(err, Report{2, 8, 354, kSource, long_name.c_str()});
  ko_array_del(a);
}

TEST(Array, EqualityRules) {
  const double v[] = {10.0, 0.5, 1.0 / 3.0};
  const double near[] = {10.0, 0.5, 1.0 / 3.0 + 1e-17};
  const double far[] = {10.0, 0.5, 0.3334};
  auto metre = [] { return reinterpret_cast<ko_unit *>(ko_linunit_new_code(9001)); };
  ko_array *base = ko_array_new("Affine", 3, v, metre());
  struct Variant {
    const char *label;
    ko_array *a;
    int equal;
  } variants[] = {
      {"spelling", ko_array_new("affine", 3, v, metre()), 1},
      {"within the tolerance", ko_array_new("Affine", 3, near, metre()), 1},
      {"other value", ko_array_new("Affine", 3, far, metre()), 0},
      {"shorter", ko_array_new("Affine", 2, v, metre()), 0},
      {"no unit", ko_array_new("Affine", 3, v, nullptr), 0},
      {"feet", ko_array_new("Affine", 3, v, reinterpret_cast<ko_unit *>(ko_linunit_new_code(9002))),
       0},
      {"other name", ko_array_new("Similarity", 3, v, metre()), 0},
  };
  for (const Variant &x : variants) {
    SCOPED_TRACE(x.label);
    ASSERT_NE(x.a, nullptr);
    EXPECT_EQ(ko_array_eq(base, x.a), x.equal);
    EXPECT_EQ(ko_object_eq(x.a, base), x.equal);
    ko_array_del(x.a);
  }
  ko_array_del(base);
}

TEST(ArrayNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *a = static_cast<ko_array *>(p);
    EXPECT_EQ(ko_array_p(a), 0);
    EXPECT_EQ(ko_array_num_values(a), 0);
    EXPECT_EQ(ko_array_values(a), nullptr);
    EXPECT_EQ(ko_array_value(a, 0), 0.0);
    EXPECT_EQ(ko_array_unit(a), nullptr);
    EXPECT_EQ(ko_array_clone(a), nullptr);
    EXPECT_EQ(ko_array_eq(a, a), 0);
    EXPECT_EQ(ko_array_del(a), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_object_vector(KO_TYPE_ARRAY), &ko_array_objvec);
}

TEST(ArrayMemory, ConstructorAndCloneCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  std::vector<double> values(1000, 0.25);
  EXPECT_GT(ko::test::sweep_failures([&] {
              ko_err err{};
              ko_array *a = ko_array_new_errext("Big", 1000, values.data(), nullptr, &err);
              if (a == nullptr) {
                expect_report(err, Report{4, 1, 1, kSource, "Big"});
                return false;
              }
              ko_array_del(a);
              return true;
            }),
            1);
  ko_array *src = ko_array_new("A", 1000, values.data(),
                               reinterpret_cast<ko_unit *>(ko_linunit_new_code(9001)));
  ko_object_authority_set(src, ko_authority_new("KO", 1, ""));
  EXPECT_GT(ko::test::clone_sweep(src, ko_array_clone, ko_array_del), 3);
  ko_array_del(src);
}

}  // namespace
