# Every target does its own set-up on a fresh Debian 12 machine: missing packages are
# installed, the build is configured and built, then the target runs.
SHELL := /bin/bash
JOBS ?= $(shell nproc)
DEV := build/dev
REL := build/release
FUZZ_SECONDS ?= 600
SANITIZER_FUZZ_SECONDS ?= 60

.PHONY: all deps configure build test run run-freecad bench fuzz check-sanitizers format clean

all: build

deps:
	@bash tools/install-deps.sh

$(DEV)/CMakeCache.txt: | deps
	cmake --preset dev

configure: deps $(DEV)/CMakeCache.txt

build: configure
	cmake --build --preset dev -j $(JOBS)

test: build
	xvfb-run -a -s "-screen 0 1600x1200x24" ctest --preset dev -j $(JOBS)

run: build
	@bash tools/run.sh $(DEV)

run-freecad: build
	@bash tools/run-freecad.sh $(DEV)

bench: deps
	cmake --preset release >/dev/null
	cmake --build --preset release -j $(JOBS)
	@bash tools/bench.sh $(REL)

fuzz: deps
	cmake --preset fuzz >/dev/null
	cmake --build --preset fuzz -j $(JOBS)
	@bash tools/fuzz.sh build/fuzz $(FUZZ_SECONDS)

check-sanitizers: deps
	cmake --preset asan >/dev/null
	cmake --build --preset asan -j $(JOBS)
	cmake --preset fuzz >/dev/null
	cmake --build --preset fuzz -j $(JOBS) --target fuzzers
	@bash tools/check-sanitizers.sh $(SANITIZER_FUZZ_SECONDS)

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf build
