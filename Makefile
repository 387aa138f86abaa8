# Thin wrapper around CMake.  `make run` builds and runs the ko tool,
# `make check` builds and runs every test, twice: a normal build with warnings
# as errors and a build under AddressSanitizer + UndefinedBehaviorSanitizer.
JOBS ?= $(shell nproc)
BUILD ?= build/release
ASAN_BUILD ?= build/asan
CMAKE_FLAGS ?=

.PHONY: all deps build run check test test-release test-asan fuzz bench catalog clean

all: build

deps:
	@bash scripts/deps.sh

build: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKO_WERROR=ON $(CMAKE_FLAGS)
	cmake --build $(BUILD) -j $(JOBS)

run: build
	@bash scripts/demo.sh $(BUILD)/ko

test-release: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

test-asan: deps
	cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DKO_WERROR=ON -DKO_SANITIZE=ON $(CMAKE_FLAGS)
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 ctest --output-on-failure -j $(JOBS)

fuzz: deps
	@bash scripts/fuzz.sh

check: test-release test-asan fuzz

test: check

bench: deps
	cmake -S . -B build/bench -DCMAKE_BUILD_TYPE=Release -DKO_BUILD_BENCH=ON -DKO_BUILD_TESTS=OFF
	cmake --build build/bench -j $(JOBS)
	@for b in build/bench/bench/bench_*; do if [ -x "$$b" ]; then "$$b" || exit 1; fi; done

catalog:
	python3 tools/catalog/generate.py --db /usr/share/proj/proj.db --out database/generated

clean:
	rm -rf build
