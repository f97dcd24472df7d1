# Entry points: `make run` (the main job on the shipped examples) and `make test`.
BUILD ?= build
GENERATOR := -G Ninja
CMAKE_FLAGS ?=

.PHONY: all bootstrap configure build run test bench fuzz asan tsan armhf clean

all: build

bootstrap:
	@scripts/bootstrap

configure: bootstrap
	@cmake -S . -B $(BUILD) $(GENERATOR) $(CMAKE_FLAGS) >/dev/null

build: configure
	@cmake --build $(BUILD)

run: build
	@$(BUILD)/paramtool classes

test: build
	@cd $(BUILD) && ctest --output-on-failure -j2

clean:
	rm -rf $(BUILD) build-*
