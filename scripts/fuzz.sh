#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for a short, bounded time.
set -euo pipefail
shopt -s nullglob
targets=(tests/fuzz/*_fuzz.cpp)
if [ ${#targets[@]} -eq 0 ]; then
  echo "fuzz: no targets yet"
  exit 0
fi
CC=clang CXX=clang++ cmake -S . -B build/fuzz -DCMAKE_BUILD_TYPE=Debug -DKO_BUILD_FUZZ=ON -DKO_BUILD_TESTS=OFF
names=()
for src in "${targets[@]}"; do names+=("$(basename "$src" .cpp)"); done
cmake --build build/fuzz -j "$(nproc)" --target "${names[@]}"
for src in "${targets[@]}"; do
  name=$(basename "$src" .cpp)
  corpus=tests/fuzz/corpus/${name%_fuzz}
  mkdir -p build/fuzz/corpus-$name
  echo "fuzz: $name"
  build/fuzz/tests/fuzz/$name -max_total_time="${FUZZ_SECONDS:-60}" -timeout=10 -rss_limit_mb=2048 \
    build/fuzz/corpus-$name $( [ -d "$corpus" ] && echo "$corpus" )
done
