# The front door. Everything is built by CMake below build/.
BUILD := build
JOBS := $(shell nproc)
MAKEFLAGS += --no-print-directory

.PHONY: run test bench fuzz plugin bundle clean

## run: the local bridge service, and the simulated FileMaker with the plug-in: a prompt on a terminal, else a tour of
##      everything.
##      make run SOLUTION=path/to/export.xml opens a solution of your own.
run:
	@scripts/install-packages.sh plugin tools
	@cmake -S . -B $(BUILD) -DVARNIX_BUILD_TESTS=OFF > /dev/null
	@cmake --build $(BUILD) -j $(JOBS) --target plugin fmsim service
	@scripts/run.sh $(BUILD) "$(SOLUTION)"

## test: every test, plain and then under the address and undefined-behaviour sanitizers; what has threads of the
##       plug-in's in it also under the thread sanitizer.
test:
	scripts/install-packages.sh plugin tools test
	cmake -S . -B $(BUILD) -DVARNIX_BUILD_TESTS=ON
	cmake --build $(BUILD) -j $(JOBS)
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)
	cmake -S . -B $(BUILD)/sanitize -DCMAKE_CXX_COMPILER=clang++ -DVARNIX_SANITIZE=address,undefined
	cmake --build $(BUILD)/sanitize -j $(JOBS)
	ctest --test-dir $(BUILD)/sanitize --output-on-failure -j $(JOBS)
	cmake -S . -B $(BUILD)/thread -DCMAKE_CXX_COMPILER=clang++ -DVARNIX_SANITIZE=thread
	cmake --build $(BUILD)/thread -j $(JOBS) --target threaded_tests
	ctest --test-dir $(BUILD)/thread --output-on-failure -L thread

## bench: speed against well-known libraries, as ratios in one run; fails below what is demanded.
bench:
	scripts/install-packages.sh plugin tools test
	cmake -S . -B $(BUILD) -DVARNIX_BUILD_TESTS=ON
	cmake --build $(BUILD) -j $(JOBS) --target benches
	$(BUILD)/bench/run-benches

## fuzz: each fuzzer for SECONDS (60); with a SEED it tries the same inputs every time.
fuzz:
	scripts/install-packages.sh plugin tools test
	cmake -S . -B $(BUILD)/sanitize -DCMAKE_CXX_COMPILER=clang++ -DVARNIX_SANITIZE=address,undefined
	cmake --build $(BUILD)/sanitize -j $(JOBS) --target fuzzers
	scripts/fuzz.sh $(BUILD)/sanitize $(or $(SECONDS),60) $(or $(SEED),0)

## plugin: only the plug-in, which needs nothing but a compiler and the platform.
plugin:
	scripts/install-packages.sh plugin
	cmake -S . -B $(BUILD)/plugin -DVARNIX_BUILD_TOOLS=OFF -DVARNIX_BUILD_TESTS=OFF
	cmake --build $(BUILD)/plugin -j $(JOBS)

## bundle: the macOS product, on a Mac, or with MACOS_SDK=dir elsewhere. FMWRAPPER_SDK=dir builds it against the vendor's
##         framework; LINUX_PLUGIN=file takes the Linux plug-in along, as does an earlier make plugin.
bundle:
	@FMWRAPPER_SDK="$(FMWRAPPER_SDK)" LINUX_PLUGIN="$(LINUX_PLUGIN)" MACOS_SDK="$(MACOS_SDK)" scripts/bundle.sh $(BUILD)

clean:
	rm -rf $(BUILD)
