// Mollweide's auxiliary angle θ, 2θ + sin 2θ = π sin φ (Snyder 1987,
// chapter 31), for the maps built on it (Mollweide, Winkel II).  The
// equation has a double root at the pole, so it is solved in δ = π − 2θ:
// δ − sin δ = π (1 − sin φ) = 2π sin²((90° − φ)/2), with δ − sin δ from its
// Taylor series for small δ, which keeps full precision near the poles.
#pragma once

#include "projections/world_sphere.h"

namespace ko::proj::world {

// δ − sin δ, accurate for small δ (series to δ¹³ below 0.25).
inline double delta_minus_sin(double d) {
  if (d >= 0.25) return d - std::sin(d);
  const double d2 = d * d;
  return d * d2 *
         (1.0 / 6 - d2 * (1.0 / 120 - d2 * (1.0 / 5040 - d2 * (1.0 / 362880 - d2 * (1.0 / 39916800 - d2 / 6227020800.0)))));
}

// θ of Mollweide for |φ|, solved in δ = π − 2θ.
inline double mollweide_theta(double abs_phi) {
  const double s = std::sin(0.5 * (kHalfPi - abs_phi));
  const double r = 2.0 * kPi * s * s;  // π (1 − sin φ)
  if (r == 0.0) return kHalfPi;
  const double d = newton_solve(delta_minus_sin, [](double t) { return 1.0 - std::cos(t); },
                                r, std::fmin(kPi, std::cbrt(6.0 * r)));
  return 0.5 * (kPi - d);
}

}  // namespace ko::proj::world
