// Internal helpers shared by every subsystem of the library.  Not installed.
#pragma once

#include "ko.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>

namespace ko {

// 2^-48: the library's relative tolerance and its "sphere" threshold on e².
inline constexpr double kTol = 3.552713678800501e-15;
inline constexpr double kPi = 3.14159265358979323846;
inline constexpr double kHalfPi = 1.5707963267948966;
inline constexpr double kTwoPi = 6.283185307179586;
inline constexpr double kDegree = 0.017453292519943295;  // radians per degree

// Equal when identical or within kTol relative to the mean magnitude.
inline bool rel_eq(double a, double b) {
  return a == b || std::fabs(a - b) <= kTol * (1.0 + (std::fabs(a) + std::fabs(b)) / 2.0);
}

// Allocates one value-initialised T through the library allocator (so that a
// caller's allocator and the failing-allocator tests see every object).
template <class T>
T *alloc_object(const char *tag = nullptr) {
  static_assert(std::is_trivially_destructible_v<T>, "library objects are plain records");
  void *p = ko_allocate_rtn(sizeof(T), 0, tag);
  if (p == nullptr) return nullptr;
  return ::new (p) T{};
}

template <class T>
void free_object(T *p, const char *tag = nullptr) {
  if (p != nullptr) ko_deallocate_rtn(p, 0, tag);
}

// Zero-filled array of n plain values through the library allocator.
template <class T>
T *alloc_array(std::size_t n, const char *tag = nullptr) {
  static_assert(std::is_trivial_v<T>);
  if (n == 0 || n > SIZE_MAX / sizeof(T)) return nullptr;
  void *p = ko_allocate_rtn(n * sizeof(T), 0, tag);
  if (p == nullptr) return nullptr;
  std::memset(p, 0, n * sizeof(T));
  return static_cast<T *>(p);
}

// RAII owner for memory from the library allocator.
struct Freer {
  void operator()(void *p) const { ko_deallocate_rtn(p, 0, nullptr); }
};
template <class T>
using Owned = std::unique_ptr<T, Freer>;

// Copies text into a fixed field, cut to the field size, always terminated.
template <std::size_t N>
inline void copy_field(char (&dst)[N], const char *src) {
  ko_strncpy(dst, src != nullptr ? src : "", static_cast<int>(N));
}

}  // namespace ko
