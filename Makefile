# Entry points: `make run` (the main job on the shipped examples) and `make test`.
BUILD ?= build
ARMHF_BUILD ?= build-armhf
GENERATOR := -G Ninja
CMAKE_FLAGS ?=

.PHONY: all bootstrap configure build run test bench asan tsan armhf fuzz clean

all: build

bootstrap:
	@scripts/bootstrap

configure: bootstrap
	@cmake -S . -B $(BUILD) $(GENERATOR) $(CMAKE_FLAGS) >/dev/null

build: configure
	@cmake --build $(BUILD)

run: build
	@scripts/tour $(BUILD)

test: build
	@cd $(BUILD) && ctest --output-on-failure -j2

# The whole suite under AddressSanitizer with UndefinedBehaviorSanitizer, and
# under ThreadSanitizer, each in a build folder of its own; any report fails.
asan: bootstrap
	@cmake -S . -B build-asan $(GENERATOR) -DPARAMS_SANITIZE=address,undefined $(CMAKE_FLAGS) >/dev/null
	@cmake --build build-asan
	@cd build-asan && ctest --output-on-failure -j2

tsan: bootstrap
	@cmake -S . -B build-tsan $(GENERATOR) -DPARAMS_SANITIZE=thread $(CMAKE_FLAGS) >/dev/null
	@cmake --build build-tsan
	@cd build-tsan && TSAN_OPTIONS=halt_on_error=1 ctest --output-on-failure -j2

# Cross-build for 32-bit ARM hard-float; CTest runs every test program under qemu-user.
armhf:
	@scripts/bootstrap armhf
	@cmake -S . -B $(ARMHF_BUILD) $(GENERATOR) -DCMAKE_TOOLCHAIN_FILE=$(CURDIR)/cmake/armhf.cmake $(CMAKE_FLAGS) >/dev/null
	@cmake --build $(ARMHF_BUILD)
	@cd $(ARMHF_BUILD) && ctest --output-on-failure -j2

# Every libFuzzer target in fuzz/ for FUZZ_SECONDS each (clang build in build-fuzz/);
# any crash, leak, undefined behaviour, timeout or out-of-memory fails.
FUZZ_SECONDS ?= 60
fuzz:
	@scripts/bootstrap fuzz
	@cmake -S . -B build-fuzz $(GENERATOR) -DCMAKE_CXX_COMPILER=clang++ -DPARAMS_FUZZ=ON $(CMAKE_FLAGS) >/dev/null
	@cmake --build build-fuzz
	@scripts/fuzz build-fuzz $(FUZZ_SECONDS)

# Benchmarks (speed and memory), built with optimisation in a build folder of
# their own; each program writes a JSON report, and the run ends with one table
# of figures, peer figures, ratios and targets (docs/performance.md).
bench: bootstrap
	@cmake -S . -B build-bench $(GENERATOR) -DCMAKE_BUILD_TYPE=Release -DPARAMS_BUILD_TESTS=OFF -DPARAMS_BUILD_BENCH=ON >/dev/null
	@cmake --build build-bench
	@cd build-bench && for b in bench/*_bench; do \
	  ./$$b --benchmark_out=$$b.json --benchmark_out_format=json || exit 1; done
	@python3 bench/summarize.py build-bench/bench/*_bench.json

clean:
	rm -rf $(BUILD) build-*
