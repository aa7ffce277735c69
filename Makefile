# The front door. CMake builds everything below build/.
BUILD := build
PREFIX := /usr/local
JOBS := $(shell getconf _NPROCESSORS_ONLN)
MAKEFLAGS += --no-print-directory

.PHONY: run help test test-sanitizers check mac-tests bench fuzz plugin service bundle install uninstall clean

## run              the local service and the simulated FileMaker with the plug-in: a prompt on a terminal, otherwise a tour
##                  of every function and command; SOLUTION=path/to/export.xml opens a solution of your own
run:
	@scripts/install-packages.sh plugin service simulator
	@cmake --preset release -B $(BUILD) -DVARNIX_BUILD_TESTS=OFF > /dev/null
	@cmake --build $(BUILD) -j $(JOBS) --target plugin fmsim service
	@scripts/run.sh $(BUILD) "$(SOLUTION)"

## test             every test
test:
	scripts/install-packages.sh plugin service simulator test
	cmake --preset release -B $(BUILD)
	cmake --build $(BUILD) -j $(JOBS)
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

## test-sanitizers  the tests under the address and undefined-behaviour sanitizers, then the programs that run plug-in
##                  threads, and the service, under the thread sanitizer
test-sanitizers:
	scripts/install-packages.sh plugin service simulator test sanitizers
	cmake --preset asan -B $(BUILD)/sanitize
	cmake --build $(BUILD)/sanitize -j $(JOBS)
	ctest --test-dir $(BUILD)/sanitize --output-on-failure -j $(JOBS)
	cmake --preset tsan -B $(BUILD)/thread
	cmake --build $(BUILD)/thread -j $(JOBS) --target threaded_tests
	ctest --test-dir $(BUILD)/thread --output-on-failure -L thread

## check            format, lint, include directions, file and function length, and the units for macOS; LINT=no skips
##                  clang-tidy, which takes minutes
check:
	scripts/install-packages.sh plugin service simulator test check
	cmake --preset release -B $(BUILD)/check -DCMAKE_UNITY_BUILD=OFF > /dev/null
	scripts/check.sh $(BUILD)/check $(LINT)

## mac-tests        what make run and make test build on a Mac, compiled and linked for both processors, not run; needs
##                  MACOS_SDK=dir, clang, lld and llvm
mac-tests:
	scripts/install-packages.sh plugin service simulator test
	scripts/mac-tests.sh $(BUILD) "$(MACOS_SDK)"

## bench            speed compared with well-known libraries; fails below the required ratios
bench:
	scripts/install-packages.sh plugin service simulator test bench
	cmake --preset release -B $(BUILD)
	cmake --build $(BUILD) -j $(JOBS) --target benches
	$(BUILD)/bench/run-benches

## fuzz             each fuzzer for SECONDS (60); the same SEED repeats the same inputs
fuzz:
	scripts/install-packages.sh plugin service simulator test sanitizers
	cmake --preset asan -B $(BUILD)/sanitize
	cmake --build $(BUILD)/sanitize -j $(JOBS) --target fuzzers
	scripts/fuzz.sh $(BUILD)/sanitize $(or $(SECONDS),60) $(or $(SEED),0)

## plugin           only the plug-in, which needs only a compiler and the platform: build/plugin/Varnix.fmx
plugin:
	scripts/install-packages.sh plugin
	cmake --preset plugin -B $(BUILD)/plugin
	cmake --build $(BUILD)/plugin -j $(JOBS)

## service          only the local service: build/varnix-service
service:
	scripts/install-packages.sh plugin service
	cmake --preset release -B $(BUILD) -DVARNIX_BUILD_SIMULATOR=OFF -DVARNIX_BUILD_TESTS=OFF
	cmake --build $(BUILD) -j $(JOBS) --target service

## bundle           the macOS product, on a Mac, or elsewhere with MACOS_SDK=dir; FMWRAPPER_SDK=dir links the vendor's
##                  framework; LINUX_PLUGIN=file includes the Linux plug-in, by default that of an earlier make plugin;
##                  SERVICE=yes also builds the service for both processors
bundle:
	@FMWRAPPER_SDK="$(FMWRAPPER_SDK)" LINUX_PLUGIN="$(LINUX_PLUGIN)" MACOS_SDK="$(MACOS_SDK)" SERVICE="$(SERVICE)" \
	  scripts/bundle.sh $(BUILD)

## install          the service, the simulator and the plug-in for it, below PREFIX (/usr/local), after make run
install:
	cmake --install $(BUILD) --prefix $(PREFIX)

## uninstall        removes what make install installed
uninstall:
	xargs -I '{}' rm -f '$(DESTDIR){}' < $(BUILD)/install_manifest.txt
	-find '$(DESTDIR)$(PREFIX)/lib/varnix' -depth -type d -exec rmdir '{}' ';'

## clean            removes everything that was built
clean:
	rm -rf $(BUILD)

## help             this list
help:
	@sed -n 's/^## //p' Makefile
