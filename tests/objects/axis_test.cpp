// Axes: construction, the order check for geographic and projected
// systems, the default axes, equality and cloning.
#include "ko.h"
#include "objects/geodetic.h"
#include "objects/geodetic_support.h"
#include "objects/object_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::Report;
using ko::test::name_of;

ko_unit *degree() { return ko_unit_new_code(9102); }
ko_unit *metre() { return ko_unit_new_code(9001); }

// Owns up to three axes for one check.
struct AxisSet {
  std::array<ko_axis *, KO_AXIS_MAX> axes{};
  ~AxisSet() {
    for (ko_axis *a : axes) ko_axis_del(a);
  }
  ko_axis **data() { return axes.data(); }
};

struct AxisSpec {
  int direction;
  int order;
  int unit;  // 0 none, 1 degree, 2 metre
};

struct OrderCase {
  const char *label;
  int kind;
  int dimension;
  std::array<AxisSpec, 3> given;
  int expected;
};

ko_axis *make(const AxisSpec &s) {
  if (s.direction == KO_AXIS_NONE) return nullptr;
  ko_unit *u = s.unit == 1 ? degree() : s.unit == 2 ? metre() : nullptr;
  return ko_axis_new("axis", "a", s.direction, u, s.order);
}

constexpr int G = KO_AXIS_KIND_GEOGRAPHIC;
constexpr int P = KO_AXIS_KIND_PROJECTED;
constexpr int N = KO_AXIS_NORTH, S = KO_AXIS_SOUTH, E = KO_AXIS_EAST, W = KO_AXIS_WEST;
constexpr int U = KO_AXIS_UP, D = KO_AXIS_DOWN, O = KO_AXIS_OTHER, X = KO_AXIS_NONE;

TEST(AxisOrder, GeographicAndProjectedSets) {
  const OrderCase cases[] = {
      {"longitude, latitude", G, 2, {{{E, 1, 1}, {N, 2, 1}, {X, 0, 0}}}, 0},
      {"latitude, longitude", G, 2, {{{N, 1, 1}, {E, 2, 1}, {X, 0, 0}}}, 0},
      {"west and south", G, 2, {{{W, 1, 1}, {S, 2, 1}, {X, 0, 0}}}, 0},
      {"with height", G, 3, {{{E, 1, 1}, {N, 2, 1}, {U, 3, 2}}}, 0},
      {"with depth", G, 3, {{{E, 1, 1}, {N, 2, 1}, {D, 3, 2}}}, 0},
      {"orders not stated", G, 2, {{{E, 0, 1}, {N, 0, 1}, {X, 0, 0}}}, 0},
      {"no units on the axes", G, 3, {{{E, 1, 0}, {N, 2, 0}, {U, 3, 0}}}, 0},
      {"projected easting, northing", P, 2, {{{E, 1, 2}, {N, 2, 2}, {X, 0, 0}}}, 0},
      {"projected polar grid", P, 2, {{{O, 1, 2}, {O, 2, 2}, {X, 0, 0}}}, 0},
      {"missing second axis", G, 2, {{{E, 1, 1}, {X, 0, 0}, {X, 0, 0}}}, 478},
      {"missing height axis", G, 3, {{{E, 1, 1}, {N, 2, 1}, {X, 0, 0}}}, 478},
      {"two east-west axes", G, 2, {{{E, 1, 1}, {W, 2, 1}, {X, 0, 0}}}, 476},
      {"two north axes", P, 2, {{{N, 1, 2}, {N, 2, 2}, {X, 0, 0}}}, 476},
      {"height first", G, 3, {{{U, 1, 2}, {N, 2, 1}, {E, 3, 1}}}, 486},
      {"east as third axis", G, 3, {{{N, 1, 1}, {E, 2, 1}, {E, 3, 2}}}, 486},
      {"other in a geographic system", G, 2, {{{O, 1, 1}, {N, 2, 1}, {X, 0, 0}}}, 486},
      {"orders swapped", G, 2, {{{E, 2, 1}, {N, 1, 1}, {X, 0, 0}}}, 482},
      {"order beyond dimension", P, 2, {{{E, 1, 2}, {N, 3, 2}, {X, 0, 0}}}, 482},
      {"metres on longitude", G, 2, {{{E, 1, 2}, {N, 2, 1}, {X, 0, 0}}}, 487},
      {"degrees on easting", P, 2, {{{E, 1, 1}, {N, 2, 2}, {X, 0, 0}}}, 487},
      {"degrees on height", G, 3, {{{E, 1, 1}, {N, 2, 1}, {U, 3, 1}}}, 487},
      {"dimension 1", G, 1, {{{E, 1, 1}, {X, 0, 0}, {X, 0, 0}}}, 488},
      {"dimension 4", P, 4, {{{E, 1, 2}, {N, 2, 2}, {U, 3, 2}}}, 488},
      {"unknown kind", 3, 2, {{{E, 1, 1}, {N, 2, 1}, {X, 0, 0}}}, 485},
  };
  for (const OrderCase &c : cases) {
    SCOPED_TRACE(c.label);
    AxisSet set;
    for (int i = 0; i < 3; ++i) set.axes[i] = make(c.given[i]);
    EXPECT_EQ(ko_axis_check_order(set.data(), c.dimension, c.kind), c.expected);
  }
}

TEST(AxisOrder, NoArrayAndForeignElements) {
  EXPECT_EQ(ko_axis_check_order(nullptr, 2, G), 0);
  EXPECT_EQ(ko_axis_check_order(nullptr, 3, P), 0);
  EXPECT_EQ(ko_axis_check_order(nullptr, 5, G), 488);
  // An element that is not an axis.
  ko_unit *unit = degree();
  ko_axis *lat = ko_axis_new("Latitude", "Lat", N, nullptr, 2);
  ko_axis *axes[2] = {reinterpret_cast<ko_axis *>(unit), lat};
  EXPECT_EQ(ko_axis_check_order(axes, 2, G), 485);
  // An axis whose direction was damaged after construction.
  ko_axis *lon = ko_axis_new("Longitude", "Lon", E, nullptr, 1);
  ko_axis *pair[2] = {lon, lat};
  lon->direction = 42;
  EXPECT_EQ(ko_axis_check_order(pair, 2, G), 484);
  ko_axis_del(lon);
  ko_axis_del(lat);
  ko_unit_del(unit);
}

TEST(AxisConstruct, FieldsAndReports) {
  ko_err err = ko::test::stale_record();
  ko_unit *u = degree();
  ko_axis *a = ko_axis_new_errext("Geodetic latitude", "Lat", N, u, 1, &err);
  ASSERT_NE(a, nullptr);
  expect_no_report(err);
  char buf[KO_AXIS_ABBR_SIZE];
  EXPECT_STREQ(ko_axis_abbr(a, buf), "Lat");
  EXPECT_EQ(ko_axis_direction(a), N);
  EXPECT_EQ(ko_axis_order(a), 1);
  EXPECT_EQ(ko_axis_unit(a), u);
  EXPECT_EQ(ko_axis_type(a), KO_TYPE_AXIS);
  ko_axis_unit_set(a, metre());
  EXPECT_EQ(ko_unit_code(ko_axis_unit(a)), 9001);
  ko_axis_unit_set(a, nullptr);
  EXPECT_EQ(ko_axis_unit(a), nullptr);
  ko_axis_del(a);

  EXPECT_EQ(ko_axis_new_errext("Up", "h", 9, nullptr, 3, &err), nullptr);
  expect_report(err, Report{4, 8, 484, "ko_axis_new_errext", "Up"});
  ko_areaunit *area = ko_areaunit_new_code(109404);
  EXPECT_EQ(ko_axis_new_errext("Up", "h", U, reinterpret_cast<ko_unit *>(area), 3, &err), nullptr);
  expect_report(err, Report{4, 8, 324, "ko_axis_new_errext", "Up"});
  ko_areaunit_del(area);
  std::string abbr(20, 'b');
  a = ko_axis_new_errext("Up", abbr.c_str(), U, nullptr, 3, &err);
  ASSERT_NE(a, nullptr);
  expect_report(err, Report{2, 8, 354, "ko_axis_new_errext", abbr.c_str()});
  EXPECT_EQ(std::string(ko_axis_abbr(a, buf)), abbr.substr(0, 15));
  ko_axis_del(a);
}

TEST(AxisDirection, NamesBothWays) {
  for (int d = KO_AXIS_NORTH; d <= KO_AXIS_OTHER; ++d) {
    const char *name = ko_axis_direction_to_name(d);
    EXPECT_STRNE(name, "");
    EXPECT_EQ(ko_axis_name_to_direction(name), d);
    std::string upper(name);
    for (char &ch : upper) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    EXPECT_EQ(ko_axis_name_to_direction(upper.c_str()), d);
  }
  EXPECT_STREQ(ko_axis_direction_to_name(KO_AXIS_EAST), "east");
  EXPECT_STREQ(ko_axis_direction_to_name(0), "");
  EXPECT_STREQ(ko_axis_direction_to_name(8), "");
  EXPECT_EQ(ko_axis_name_to_direction("northeast"), KO_AXIS_NONE);
  EXPECT_EQ(ko_axis_name_to_direction(nullptr), KO_AXIS_NONE);
}

// The default axes pass the order check of their own kind.
TEST(AxisFill, DefaultAxesForEachKind) {
  struct Case {
    int kind, dimension;
    const char *names[3];
    int directions[3];
  };
  const Case cases[] = {
      {G, 2, {"Longitude", "Latitude", nullptr}, {E, N, 0}},
      {G, 3, {"Longitude", "Latitude", "Ellipsoidal height"}, {E, N, U}},
      {P, 2, {"(X)", "(Y)", nullptr}, {E, N, 0}},
      {P, 3, {"(X)", "(Y)", "Ellipsoidal height"}, {E, N, U}},
  };
  ko_unit *grad = ko_unit_new_code(9105);
  ko_unit *foot = ko_unit_new_code(9003);
  for (const Case &c : cases) {
    SCOPED_TRACE(testing::Message() << c.kind << "/" << c.dimension);
    AxisSet set;
    ko_unit *horizontal = c.kind == G ? grad : foot;
    ASSERT_EQ(ko_axis_fill(set.data(), c.dimension, c.kind, horizontal, nullptr), 1);
    EXPECT_EQ(ko_axis_check_order(set.data(), c.dimension, c.kind), 0);
    for (int i = 0; i < c.dimension; ++i) {
      char name[KO_NAME_SIZE];
      EXPECT_STREQ(ko_axis_name(set.axes[i], name), c.names[i]);
      EXPECT_EQ(ko_axis_direction(set.axes[i]), c.directions[i]);
      EXPECT_EQ(ko_axis_order(set.axes[i]), i + 1);
      ko_unit *expected = i < 2 ? horizontal : nullptr;
      if (expected != nullptr) {
        EXPECT_NE(ko_axis_unit(set.axes[i]), expected) << "the axes own clones";
        EXPECT_EQ(ko_unit_eq(ko_axis_unit(set.axes[i]), expected), 1);
      } else {
        EXPECT_EQ(ko_unit_code(ko_axis_unit(set.axes[i])), -1);
        EXPECT_EQ(ko_unit_factor(ko_axis_unit(set.axes[i])), 1.0);
      }
    }
    if (c.dimension == 2) {
      EXPECT_EQ(set.axes[2], nullptr);
    }
  }
  AxisSet defaults;
  ASSERT_EQ(ko_axis_fill(defaults.data(), 2, G, nullptr, nullptr), 1);
  char name[KO_NAME_SIZE];
  EXPECT_STREQ(ko_unit_name(ko_axis_unit(defaults.axes[0]), name), "Degree");
  AxisSet none;
  EXPECT_EQ(ko_axis_fill(none.data(), 4, G, nullptr, nullptr), 0);
  EXPECT_EQ(ko_axis_fill(none.data(), 2, 7, nullptr, nullptr), 0);
  EXPECT_EQ(ko_axis_fill(nullptr, 2, G, nullptr, nullptr), 0);
  EXPECT_EQ(none.axes[0], nullptr);
  ko_unit_del(grad);
  ko_unit_del(foot);
}

TEST(AxisEquality, NameDirectionOrderAndUnit) {
  ko_axis *a = ko_axis_new("Latitude", "Lat", N, degree(), 2);
  ko_axis *same = ko_axis_new("LATITUDE", "phi", N, degree(), 2);
  ko_axis *south = ko_axis_new("Latitude", "Lat", S, degree(), 2);
  ko_axis *first = ko_axis_new("Latitude", "Lat", N, degree(), 1);
  ko_axis *grads = ko_axis_new("Latitude", "Lat", N, ko_unit_new_code(9105), 2);
  ko_axis *bare = ko_axis_new("Latitude", "Lat", N, nullptr, 2);
  ko_axis *bare2 = ko_axis_new("Latitude", "Lat", N, nullptr, 2);
  EXPECT_EQ(ko_axis_eq(a, same), 1);
  EXPECT_EQ(ko_axis_eq(a, south), 0);
  EXPECT_EQ(ko_axis_eq(a, first), 0);
  EXPECT_EQ(ko_axis_eq(a, grads), 0);
  EXPECT_EQ(ko_axis_eq(a, bare), 0);
  EXPECT_EQ(ko_axis_eq(bare, bare2), 1);
  ko_axis *c = ko_axis_clone(a);
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(ko_axis_eq(a, c), 1);
  EXPECT_NE(ko_axis_unit(c), ko_axis_unit(a));
  char buf[KO_AXIS_ABBR_SIZE];
  EXPECT_STREQ(ko_axis_abbr(c, buf), "Lat");
  EXPECT_EQ(ko_object_vector(KO_TYPE_AXIS), &ko_axis_objvec);
  for (ko_axis *x : {a, same, south, first, grads, bare, bare2, c}) ko_axis_del(x);
}

TEST(AxisNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *a = static_cast<ko_axis *>(p);
    char buf[KO_AXIS_ABBR_SIZE] = "x";
    EXPECT_STREQ(ko_axis_abbr(a, buf), "");
    EXPECT_EQ(ko_axis_direction(a), KO_AXIS_NONE);
    EXPECT_EQ(ko_axis_order(a), 0);
    EXPECT_EQ(ko_axis_unit(a), nullptr);
    ko_axis_unit_set(a, nullptr);
    EXPECT_EQ(ko_axis_clone(a), nullptr);
    EXPECT_EQ(ko_axis_del(a), nullptr);
    EXPECT_EQ(ko_axis_eq(a, a), 0);
  }
  EXPECT_TRUE(ghost.untouched());
}

TEST(AxisMemory, ConstructorCloneAndFillCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_err err{};
              ko_axis *a = ko_axis_new_errext("Easting", "E", E, nullptr, 1, &err);
              if (a == nullptr) {
                expect_report(err, Report{4, 1, 1, "ko_axis_new_errext", "Easting"});
                return false;
              }
              ko_axis_del(a);
              return true;
            }),
            0);
  ko_axis *src = ko_axis_new("Easting", "E", E, metre(), 1);
  EXPECT_GT(ko::test::clone_sweep(src, ko_axis_clone, ko_axis_del), 1);
  ko_axis_del(src);
  EXPECT_GT(ko::test::sweep_failures([] {
              AxisSet set;
              return ko_axis_fill(set.data(), 3, G, nullptr, nullptr) == 1;
            }),
            5);
}

}  // namespace
