// Extents: emptiness, equality within the library tolerance, containment
// across the antimeridian, and the constants record that carries one.
#include "ko.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(GcsExtent, ClearedIsEmptyAndEqualToAnotherEmpty) {
  ko_gcs_extent a{1, 2, 3, 4, 0, 0};
  EXPECT_FALSE(ko_gcs_extent_empty(&a));
  ko_gcs_extent_clear(&a);
  EXPECT_TRUE(ko_gcs_extent_empty(&a));
  ko_gcs_extent b{};
  EXPECT_TRUE(ko_gcs_extent_eq(&a, &b));
  EXPECT_TRUE(ko_gcs_extent_empty(nullptr));
}

TEST(GcsExtent, EqualityUsesRelativeTolerance) {
  ko_gcs_extent a{-10, 40, 20, 60, 0, 0};
  ko_gcs_extent b = a;
  b.east = std::nextafter(20.0, 21.0);
  EXPECT_TRUE(ko_gcs_extent_eq(&a, &b));
  b.east = 20.000001;
  EXPECT_FALSE(ko_gcs_extent_eq(&a, &b));
  ko_gcs_extent empty{};
  EXPECT_FALSE(ko_gcs_extent_eq(&a, &empty));
}

TEST(GcsExtent, ContainsHandlesTheAntimeridian) {
  struct Case {
    ko_gcs_extent box;
    double lon, lat;
    int inside;
  } cases[] = {
      {{-10, 40, 20, 60, 0, 0}, 0, 50, 1},
      {{-10, 40, 20, 60, 0, 0}, 25, 50, 0},
      {{-10, 40, 20, 60, 0, 0}, 0, 61, 0},
      {{170, -50, -170, -30, 0, 0}, 175, -40, 1},   // crosses 180
      {{170, -50, -170, -30, 0, 0}, -175, -40, 1},
      {{170, -50, -170, -30, 0, 0}, 0, -40, 0},
      {{-10, 40, 20, 60, 0, 0}, NAN, 50, 0},
  };
  for (const Case &c : cases)
    EXPECT_EQ(ko_gcs_extent_contains(&c.box, c.lon, c.lat), c.inside) << c.lon << " " << c.lat;
}

TEST(OtherExtents, EmptyCopyAndEqual) {
  ko_vcs_extent v{-100, 500};
  ko_vcs_extent v2;
  ko_vcs_extent_copy(&v2, &v);
  EXPECT_TRUE(ko_vcs_extent_eq(&v, &v2));
  ko_vcs_extent_copy(&v2, nullptr);
  EXPECT_TRUE(ko_vcs_extent_empty(&v2));
  ko_time_extent t{2000.0, 2020.5};
  ko_time_extent t2{2000.0, 2021.0};
  EXPECT_FALSE(ko_time_extent_eq(&t, &t2));
  ko_time_extent_clear(&t2);
  EXPECT_TRUE(ko_time_extent_empty(&t2));
}

TEST(Constants, OwnsItsArraysAndDiesCleanly) {
  ko_constants *c = ko_constants_new();
  ASSERT_TRUE(ko_constants_p(c));
  EXPECT_EQ(ko_constants_dvals(c), nullptr);
  EXPECT_TRUE(ko_gcs_extent_empty(ko_constants_extent(c)));
  auto *iv = static_cast<int32_t *>(ko_allocate_rtn(2 * sizeof(int32_t), 0, nullptr));
  iv[0] = 2;
  iv[1] = 7;
  ko_constants_ivals_set(c, iv);
  // Replacing an array frees the old one (the sanitizer build checks this).
  auto *iv2 = static_cast<int32_t *>(ko_allocate_rtn(2 * sizeof(int32_t), 0, nullptr));
  iv2[0] = 2;
  iv2[1] = 9;
  ko_constants_ivals_set(c, iv2);
  EXPECT_EQ(ko_constants_ivals(c)[1], 9);
  int private_data = 0;
  ko_constants_data_set(c, &private_data);
  ko_gcs_extent box{1, 2, 3, 4, 0.5, 0.5};
  ko_constants_extent_set(c, &box);
  EXPECT_TRUE(ko_gcs_extent_eq(ko_constants_extent(c), &box));
  EXPECT_EQ(ko_constants_del(c), nullptr);
  // Everything on a dead or null record answers "nothing".
  EXPECT_FALSE(ko_constants_p(nullptr));
  EXPECT_EQ(ko_constants_ivals(nullptr), nullptr);
  EXPECT_EQ(ko_constants_extent(nullptr), nullptr);
}

}  // namespace
