# The commands people run. Each target installs what is missing first.
JOBS ?= 2
CMAKE_FLAGS ?=

.PHONY: all setup build check check-asan check-tsan bench demo fuzz install deb clean

all: build

setup:
	@scripts/setup

# $(1): build folder, $(2): extra CMake flags
define configure_and_build
	cmake -S . -B $(1) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSTAGEBEACON_WERROR=ON $(2) $(CMAKE_FLAGS) >/dev/null
	cmake --build $(1) -j$(JOBS)
endef

build: setup
	$(call configure_and_build,build,)

check: build
	cd build && ctest --output-on-failure -j$(JOBS) --timeout 300
	FUZZ_SECONDS=$(CHECK_FUZZ_SECONDS) JOBS=$(JOBS) scripts/fuzz

check-asan: setup
	$(call configure_and_build,build-asan,-DSTAGEBEACON_SANITIZE=address)
	cd build-asan && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 \
		LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan.supp UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
		ctest --output-on-failure -j$(JOBS) --timeout 600

check-tsan: setup
	$(call configure_and_build,build-tsan,-DSTAGEBEACON_SANITIZE=thread)
	cd build-tsan && TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1:suppressions=$(CURDIR)/tests/tsan.supp \
		ctest --output-on-failure -j$(JOBS) --timeout 900

# Every parser of outside data under libFuzzer, FUZZ_SECONDS (60) each;
# `make check` runs them CHECK_FUZZ_SECONDS each so that they keep working.
FUZZ_SECONDS ?= 60
CHECK_FUZZ_SECONDS ?= 3
fuzz: setup
	FUZZ_SECONDS=$(FUZZ_SECONDS) JOBS=$(JOBS) scripts/fuzz

bench: build
	scripts/bench

# The product working: the player and the plug-in against a local service.
demo: build
	scripts/demo

# The app, plug-in, player and service with their desktop files, icons, man
# pages and the service's unit, under PREFIX (inside DESTDIR when given).
PREFIX ?= /usr/local
install: build
	DESTDIR="$(DESTDIR)" cmake --install build --prefix "$(PREFIX)"

# A Debian package (installing under /usr) in build/.
deb: build
	cd build && cpack -G DEB

clean:
	rm -rf build build-asan build-tsan build-fuzz
