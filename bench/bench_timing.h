// Timing for the plain benchmarks: process CPU time (the machine may be
// shared), the best of several repetitions of each measurement.
#pragma once

#include <algorithm>
#include <ctime>
#include <functional>

namespace ko::bench {

inline double cpu_seconds() {
  timespec ts{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
  return static_cast<double>(ts.tv_sec) + 1e-9 * static_cast<double>(ts.tv_nsec);
}

// Best time in seconds of `run` over `repetitions`; `prepare` runs untimed
// before each.
inline double best_of(int repetitions, const std::function<void()> &prepare,
                      const std::function<void()> &run) {
  double best = 1e300;
  for (int r = 0; r < repetitions; ++r) {
    prepare();
    const double start = cpu_seconds();
    run();
    best = std::min(best, cpu_seconds() - start);
  }
  return best;
}

}  // namespace ko::bench
