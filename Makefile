# The front door: `make run` starts Kestrelway, `make test` builds and runs the tests.
# Both install the Debian packages the build needs when they are missing.

PACKAGES := cmake ninja-build g++ pkg-config libgtest-dev libgmock-dev libbenchmark-dev \
            qt6-base-dev libgl-dev xvfb xauth x11-utils imagemagick fonts-liberation \
            clang-format libfontconfig-dev libsodium-dev libsecret-1-dev \
            at-spi2-core python3-pyatspi dbus dbus-daemon clang-14 libclang-rt-14-dev
SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)
JOBS ?= $(shell nproc)
FUZZ_SECONDS ?= 60

.PHONY: deps test asan run bench build clean format format-check fuzz

deps:
	@missing=""; for p in $(PACKAGES); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing:$$missing"; \
	  $(SUDO) apt-get update -qq && \
	  DEBIAN_FRONTEND=noninteractive $(SUDO) apt-get install -y -qq $$missing; \
	fi

test: deps
	cmake --preset ci
	cmake --build --preset ci -j $(JOBS)
	ctest --preset ci -j $(JOBS)

asan: deps
	cmake --preset asan
	cmake --build --preset asan -j $(JOBS)
	ctest --preset asan -j $(JOBS)

build: deps
	cmake --preset release
	cmake --build --preset release -j $(JOBS) --target kestrelway kestrelway-demo kestrelway-install dravlinkd

bench: deps
	cmake --preset release
	cmake --build --preset release -j $(JOBS)
	@for b in build/release/bench/bench_*; do echo "== $$b"; $$b; done
	scripts/startup-bench.sh build/release

run: build
	@scripts/run.sh build/release

# Every parser under libFuzzer with the sanitizers, FUZZ_SECONDS each, from the committed seeds.
fuzz: deps
	cmake --preset fuzz
	cmake --build --preset fuzz -j $(JOBS)
	scripts/fuzz.sh build/fuzz $(FUZZ_SECONDS)

clean:
	rm -rf build

SOURCES = find src tests bench tools fuzz -name '*.cpp' -o -name '*.h'

format: deps
	$(SOURCES) | xargs clang-format -i

# Fails on any file that clang-format would change.
format-check: deps
	$(SOURCES) | xargs clang-format --dry-run -Werror
