# The commands the README names. Each sets the machine up first (scripts/setup is quick when
# everything is present), then configures and builds with CMake.
BUILD      ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 20
JOBS       ?= $(shell nproc)
CMAKE_ARGS ?=

.PHONY: demo test sanitize fuzz bench build setup format clean

# Publishes the demo project's two targets (100 % and 50 %) into examples/out/.
demo: build
	$(BUILD)/bin/quillmark publish examples/demo.quillmark
	@echo "The demo font went to examples/out/ (texture and BMFont descriptor per target):"
	@ls -l examples/out

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS) --timeout 600

sanitize: setup
	cmake -S . -B $(ASAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQUILLMARK_SANITIZE=ON \
	  -DQUILLMARK_BENCH=OFF $(CMAKE_ARGS)
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	cd $(ASAN_BUILD) && LSAN_OPTIONS=suppressions=$(CURDIR)/tests/support/lsan.supp \
	  UBSAN_OPTIONS=print_stacktrace=1 \
	  ctest --output-on-failure -j $(JOBS) --timeout 1200
	$(MAKE) fuzz FUZZ_SECONDS=$(FUZZ_SECONDS)

# Builds the libFuzzer targets with clang (ASan + UBSan) and runs each for FUZZ_SECONDS, starting
# from the inputs kept in tests/data/fuzz/<target>/. A finding stops with a non-zero status.
fuzz: setup
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DQUILLMARK_FUZZ=ON -DQUILLMARK_SANITIZE=ON -DQUILLMARK_TESTS=OFF -DQUILLMARK_BENCH=OFF
	cmake --build $(FUZZ_BUILD) -j $(JOBS)
	@for f in $(FUZZ_BUILD)/fuzz/fuzz_*; do [ -x "$$f" ] || continue; n=$$(basename $$f); \
	  seeds=tests/data/fuzz/$$n; [ -d $$seeds ] || seeds=; mkdir -p $(FUZZ_BUILD)/corpus/$$n; \
	  echo "== $$n for $(FUZZ_SECONDS) s"; \
	  ASAN_OPTIONS=detect_leaks=0 $$f -max_total_time=$(FUZZ_SECONDS) -rss_limit_mb=4096 \
	    -artifact_prefix=$(FUZZ_BUILD)/ $(FUZZ_BUILD)/corpus/$$n $$seeds || exit 1; done

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
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD)
