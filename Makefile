# Brantok — the two set-up commands are `make run` and `make test`.
BUILD      ?= build
BUILD_ASAN ?= build-asan
BUILD_FUZZ ?= build-fuzz
BUILD_PACKAGE ?= build-package
FUZZ_SECONDS ?= 60
JOBS       ?= $(shell nproc 2>/dev/null || echo 2)

.PHONY: run test deps build asan bench coverage fuzz package clean

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

# libFuzzer targets (clang, ASan + UBSan), each run for FUZZ_SECONDS; findings land in
# $(BUILD_FUZZ)/findings/<target>/. Keep a fixed finding's input in fuzz/corpus/<target>/.
fuzz:
	@sh scripts/install-deps.sh --fuzz
	CC=clang CXX=clang++ cmake -S . -B $(BUILD_FUZZ) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	    -DBRANTOK_FUZZ=ON -DBRANTOK_TESTS=OFF -DBRANTOK_BENCH=OFF
	cmake --build $(BUILD_FUZZ) -j $(JOBS) --target fuzz_nc_reader fuzz_analysed fuzz_frames
	sh scripts/fuzz.sh $(BUILD_FUZZ) $(FUZZ_SECONDS)

# The Debian package of the three programs: $(BUILD_PACKAGE)/brantok_<version>_<arch>.deb
package:
	@sh scripts/install-deps.sh --package
	cmake -S . -B $(BUILD_PACKAGE) -G Ninja -DCMAKE_BUILD_TYPE=Release -DBRANTOK_TESTS=OFF -DBRANTOK_BENCH=OFF
	cmake --build $(BUILD_PACKAGE) -j $(JOBS)
	cd $(BUILD_PACKAGE) && cpack -G DEB
	@ls $(BUILD_PACKAGE)/*.deb

clean:
	rm -rf $(BUILD) $(BUILD_ASAN) $(BUILD_FUZZ) $(BUILD_PACKAGE) build-coverage
