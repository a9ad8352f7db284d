# The two commands of the README: `make demo` and `make test`. Everything else is theirs.
JOBS       ?= $(shell nproc)
BUILD      ?= build
ASAN_BUILD ?= build-sanitize
FUZZ_BUILD ?= build-fuzz
# `make fuzz` runs every target this long (seconds) from a fixed seed; FUZZ_SECONDS=600 digs.
FUZZ_SECONDS ?= 5
FUZZ_TARGETS ?=
DEMO_HOST  ?= $(BUILD)/demo-host
# ccache, where the machine has it, makes rebuilds in several checkouts cheap.
LAUNCHER   := $(if $(shell command -v ccache),-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)

.PHONY: all deps build demo demo-fresh test test-sanitize fuzz install package clean

all: build

deps:
	@scripts/install-deps.sh

build: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_INSTALL_PREFIX=/usr $(LAUNCHER)
	cmake --build $(BUILD) -j$(JOBS)

# Runs the console in this terminal on a simulated host kept under build/ between runs.
demo: build
	@if [ ! -e $(DEMO_HOST)/etc/konu-sim/host.json ]; then $(BUILD)/konu-hostsim create $(DEMO_HOST) >/dev/null; fi
	@echo "Simulated host: $(DEMO_HOST)  (start afresh with: make demo-fresh)"
	@echo "Log in as root, password konu. F2 to log in; Esc leaves screens; Ctrl-C ends the console."
	@sleep 2
	$(BUILD)/konu --host-root $(DEMO_HOST)

demo-fresh:
	rm -rf $(DEMO_HOST)
	$(MAKE) demo

test: build
	cd $(BUILD) && ctest --output-on-failure -j$(JOBS) --timeout 300

test-sanitize:
	@scripts/install-deps.sh
	cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DKONU_SANITIZE=ON $(LAUNCHER)
	cmake --build $(ASAN_BUILD) -j$(JOBS)
	cd $(ASAN_BUILD) && LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp ctest --output-on-failure -j$(JOBS) --timeout 600

# Installs under /usr (DESTDIR=DIR stages it elsewhere).
install: build
	DESTDIR="$(DESTDIR)" cmake --install $(BUILD) --prefix /usr

# Builds konu_VERSION_ARCH.deb in the build folder: apt install ./$(BUILD)/konu_*.deb
package: build
	cd $(BUILD) && cpack -G DEB

# libFuzzer targets of tests/fuzz in their own clang tree; each runs FUZZ_SECONDS from its seeds.
fuzz:
	@scripts/install-deps.sh --fuzz
	cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKONU_FUZZ=ON \
	  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ $(LAUNCHER)
	cmake --build $(FUZZ_BUILD) -j$(JOBS) --target fuzzers
	tests/fuzz/run $(FUZZ_BUILD)/tests/fuzz $(FUZZ_SECONDS) $(FUZZ_TARGETS)

# konu side by side with dialog and whiptail (figures only; see bench/Bench.cpp).
bench: build
	@scripts/install-deps.sh --bench
	$(BUILD)/bench/konu-bench

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD)
