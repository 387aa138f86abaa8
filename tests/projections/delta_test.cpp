// Longitude wrapping: ko_delta folds into [-π, π], ko_delta_center into
// [c - π, c + π].  The sweep compares with IEEE remainder, which reduces
// exactly by a different rule (round-to-nearest turn count).
#include "ko.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kDeg = kPi / 180;

TEST(Delta, NamedCases) {
  struct Case {
    double angle, expected;
  } const cases[] = {
      {0.0, 0.0},
      {kPi, kPi},                 // in range: returned unchanged, not -π
      {-kPi, -kPi},
      {1.5 * kPi, -0.5 * kPi},
      {-1.5 * kPi, 0.5 * kPi},
      {190 * kDeg, -170 * kDeg},
      {-190 * kDeg, 170 * kDeg},
      {720 * kDeg + 10 * kDeg, 10 * kDeg},
      {-7 * kPi - 0.25, kPi - 0.25},
  };
  for (const auto &c : cases) {
    // fmod is exact; only the final add/subtract of 2π rounds.
    EXPECT_NEAR(ko_delta(c.angle), c.expected, 4e-15) << c.angle;
  }
}

TEST(Delta, InRangeAnglesAreReturnedBitForBit) {
  for (double a : {-kPi, -3.0, -1e-300, 0.0, 1e-300, 2.5, kPi}) {
    EXPECT_EQ(ko_delta(a), a);
  }
}

TEST(Delta, AgreesWithIeeeRemainderOverManyTurns) {
  for (int i = -4000; i <= 4000; ++i) {
    double a = i * 0.0137 * kPi + 0.001;
    double got = ko_delta(a);
    double want = std::remainder(a, 2 * kPi);
    ASSERT_LE(std::fabs(got), kPi) << a;
    // The two differ only where one gives +π and the other -π.
    if (std::fabs(std::fabs(want) - kPi) > 1e-12) {
      EXPECT_NEAR(got, want, 1e-15 * (1 + std::fabs(a))) << a;
    }
  }
}

TEST(Delta, NonFiniteGivesNan) {
  EXPECT_TRUE(std::isnan(ko_delta(std::numeric_limits<double>::quiet_NaN())));
  EXPECT_TRUE(std::isnan(ko_delta(std::numeric_limits<double>::infinity())));
  EXPECT_TRUE(std::isnan(ko_delta_center(1.0, std::numeric_limits<double>::quiet_NaN())));
}

TEST(DeltaCenter, NamedCases) {
  struct Case {
    double angle, center, expected;
  } const cases[] = {
      {-170 * kDeg, 180 * kDeg, 190 * kDeg},
      {170 * kDeg, 180 * kDeg, 170 * kDeg},
      {10 * kDeg, -180 * kDeg, -350 * kDeg},
      {0.5, 0.0, 0.5},
      {4.0, 0.0, 4.0 - 2 * kPi},
      {-4.0, 0.0, 2 * kPi - 4.0},
      {1000.0, 1.0, 1.0 + std::remainder(999.0, 2 * kPi)},
  };
  for (const auto &c : cases) {
    EXPECT_NEAR(ko_delta_center(c.angle, c.center), c.expected, 1e-13)
        << c.angle << " about " << c.center;
  }
}

TEST(DeltaCenter, ResultStaysWithinHalfATurnOfTheCentre) {
  for (double center : {-3 * kPi, -kPi, 0.0, 0.3, kPi, 10.0}) {
    for (int i = -300; i <= 300; ++i) {
      double a = i * 0.071;
      double r = ko_delta_center(a, center);
      EXPECT_LE(std::fabs(r - center), kPi + 1e-14) << a << " about " << center;
      // Same direction on the circle as the input.
      EXPECT_NEAR(std::remainder(r - a, 2 * kPi), 0.0, 1e-12);
    }
  }
}

}  // namespace
