# The commands the README names. Each sets the machine up first (scripts/setup is quick when
# everything is present), then configures and builds with CMake.
BUILD      ?= build
ASAN_BUILD ?= build-asan
JOBS       ?= $(shell nproc)
CMAKE_ARGS ?=

.PHONY: demo test sanitize bench build setup format clean

demo: build
	@$(BUILD)/bin/quillmark fonts

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS) --timeout 600

sanitize: setup
	cmake -S . -B $(ASAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQUILLMARK_SANITIZE=ON \
	  -DQUILLMARK_BENCH=OFF $(CMAKE_ARGS)
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1 \
	  ctest --output-on-failure -j $(JOBS) --timeout 1200

bench: build
	@for b in $(BUILD)/bench/bench_*; do echo "== $$b"; $$b --benchmark_min_time=0.5 || exit 1; done

build: setup
	cmake -S . -B $(BUILD) -G Ninja $(CMAKE_ARGS)
	cmake --build $(BUILD) -j $(JOBS)

setup:
	@scripts/setup

format:
	find Classes Platform tests bench -name '*.cpp' -o -name '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD) $(ASAN_BUILD)
