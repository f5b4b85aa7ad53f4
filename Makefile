# Brantok — the two set-up commands are `make run` and `make test`.
BUILD      ?= build
BUILD_ASAN ?= build-asan
JOBS       ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: run test deps build asan bench coverage clean

deps:
	@sh scripts/install-deps.sh

$(BUILD)/build.ninja: CMakeLists.txt
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo

build: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

# Offline unless the settings say otherwise: a fresh store starts offline.
run: build
	@sh scripts/install-deps.sh --run
	./$(BUILD)/brantok

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

# Tests under AddressSanitizer and UndefinedBehaviorSanitizer.
asan: deps
	cmake -S . -B $(BUILD_ASAN) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DBRANTOK_SANITIZE=ON
	cmake --build $(BUILD_ASAN) -j $(JOBS)
	cd $(BUILD_ASAN) && QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0 \
	    UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 ctest --output-on-failure -j $(JOBS)

bench: deps
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(BUILD) -j $(JOBS)
	for b in $(BUILD)/bench/bench_*; do [ -x "$$b" ] && "$$b"; done

# Line and branch coverage of the whole suite, per folder of src/, and an HTML report.
coverage: deps
	@sh scripts/install-deps.sh --coverage
	cmake -S . -B build-coverage -G Ninja -DCMAKE_BUILD_TYPE=Debug -DBRANTOK_COVERAGE=ON -DBRANTOK_BENCH=OFF
	cmake --build build-coverage -j $(JOBS)
	find build-coverage -name '*.gcda' -delete
	cd build-coverage && QT_QPA_PLATFORM=offscreen ctest -j $(JOBS) >/dev/null || true
	@sh scripts/coverage-report.sh build-coverage

clean:
	rm -rf $(BUILD) $(BUILD_ASAN) build-coverage
