# Vantrel: set-up, build, run and test.
#   make run       install what is missing, build the two programs and the demo data
#                  generator only, start Vantrel on the demo data
#   make test      install what is missing, build everything, run every test
#   make sanitize  core tests under AddressSanitizer and UndefinedBehaviorSanitizer
#   make bench     build and run the benchmarks
#   make fuzz      build the fuzz targets with clang (libFuzzer)
#   make fuzz-smoke  build them, run each over its seed corpus plus 20 seconds
#   make package   the Debian package build/vantrel_VERSION_ARCH.deb (CPack)
#   make package-check  the package, then desktop-file-validate, appstreamcli and lintian
#   make install   install what the package holds under PREFIX (default /usr/local)

BUILD      ?= build
SAN_BUILD  ?= build-sanitize
FUZZ_BUILD ?= build-fuzz
JOBS       ?= $(shell nproc 2>/dev/null || echo 2)
PREFIX     ?= /usr/local
DEMO_DIR   ?= $(BUILD)/demo

DEB_PACKAGES := g++ cmake ninja-build pkg-config qt6-base-dev libzip-dev zlib1g-dev \
                libgtest-dev libgmock-dev libbenchmark-dev locales

# A compiler cache speeds up rebuilds when one is installed (worktrees share it).
LAUNCHER := $(shell command -v ccache >/dev/null 2>&1 && echo -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)

SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)

# What the package and its checks need besides the build.
PACKAGE_TOOLS := dpkg-dev file desktop-file-utils appstream lintian

# What `make run` builds (no tests or benchmarks); `make install` and `make package`
# add the compressed manual pages and changelog.
PROGRAMS := vantrel vantrel-cli vantrel-demo-data

.PHONY: all deps configure build programs run demo test sanitize bench fuzz fuzz-smoke \
        package package-check install clean

all: build

# Install the Debian packages that are not there yet (nothing when all are present).
# The fuzz targets add clang and its libFuzzer runtime.
deps:
	@missing=""; for p in $(DEB_PACKAGES) $(EXTRA_PACKAGES); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing:$$missing"; \
	  $(SUDO) apt-get update -qq && \
	  DEBIAN_FRONTEND=noninteractive $(SUDO) apt-get install -y -qq $$missing; \
	fi

$(BUILD)/build.ninja:
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo $(LAUNCHER)

configure: deps $(BUILD)/build.ninja

build: configure
	cmake --build $(BUILD) -j $(JOBS)

programs: configure
	cmake --build $(BUILD) -j $(JOBS) --target $(PROGRAMS)

demo: programs
	@rm -rf $(DEMO_DIR) && $(BUILD)/vantrel-demo-data $(DEMO_DIR) >/dev/null
	@echo "Demo program folder: $(DEMO_DIR)"

run: demo
	@if [ -n "$$DISPLAY$$WAYLAND_DISPLAY" ]; then \
	  $(BUILD)/vantrel --app-dir $(DEMO_DIR); \
	else \
	  echo "No display found (DISPLAY and WAYLAND_DISPLAY are unset): running the headless demo."; \
	  $(BUILD)/vantrel-cli demo $(DEMO_DIR); \
	fi

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

sanitize: deps
	cmake -S . -B $(SAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVANTREL_SANITIZE=ON \
	  -DVANTREL_GUI=OFF -DVANTREL_BENCH=OFF $(LAUNCHER)
	cmake --build $(SAN_BUILD) -j $(JOBS) 
	cd $(SAN_BUILD) && ctest --output-on-failure -j $(JOBS)

bench: build
	@for b in $(BUILD)/*_bench; do echo "== $$b"; $$b; done

fuzz: EXTRA_PACKAGES = clang libclang-rt-dev
fuzz: deps
	CXX=clang++ CC=clang cmake -S . -B $(FUZZ_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DVANTREL_FUZZ=ON -DVANTREL_GUI=OFF -DVANTREL_TESTS=OFF -DVANTREL_BENCH=OFF $(LAUNCHER)
	cmake --build $(FUZZ_BUILD) -j $(JOBS)
	@ls $(FUZZ_BUILD)/*_fuzz 2>/dev/null || true

# Each target (name:seed folder under fuzz/corpus) runs over its seeds, then
# fuzzes for FUZZ_SECONDS; new inputs go to a scratch folder that is removed.
# A crash, a sanitizer report or files left behind by a target fail the run.
FUZZ_SECONDS ?= 20
FUZZ_TARGETS := hpi:hpi hpi_extract:hpi pcx:pcx profile:profile unzip:unzip units:units \
                buildset:buildset tdf:tdf
fuzz-smoke: fuzz
	@work=$$(mktemp -d); trap 'rm -rf "$$work"' EXIT; \
	for t in $(FUZZ_TARGETS); do \
	  name=$${t%%:*}; seeds=fuzz/corpus/$${t#*:}; mkdir -p "$$work/$$name"; \
	  if ! TMPDIR="$$work" $(FUZZ_BUILD)/$${name}_fuzz -max_total_time=$(FUZZ_SECONDS) \
	       -timeout=10 -artifact_prefix=$(FUZZ_BUILD)/$${name}- "$$work/$$name" "$$seeds" \
	       >"$$work/$$name.log" 2>&1; then \
	    tail -40 "$$work/$$name.log"; echo "fuzz-smoke: $$name failed"; exit 1; \
	  fi; \
	  if ls -d "$$work"/vantrel-* >/dev/null 2>&1; then \
	    echo "fuzz-smoke: $$name left files behind"; exit 1; \
	  fi; \
	  printf '%-12s %s\n' "$$name" "$$(grep -E '^#[0-9]+[[:space:]]+DONE' "$$work/$$name.log" | tail -1)"; \
	done

package: EXTRA_PACKAGES = $(PACKAGE_TOOLS)
package: programs
	cmake --build $(BUILD) --target vantrel_install_data
	rm -f $(BUILD)/vantrel_*.deb
	cd $(BUILD) && cpack -G DEB
	@ls $(BUILD)/vantrel_*.deb

package-check: package
	desktop-file-validate data/vantrel.desktop
	appstreamcli validate --no-net packaging/io.github.vantrel.Vantrel.metainfo.xml
	lintian --fail-on error $(BUILD)/vantrel_*.deb

install: programs
	cmake --build $(BUILD) --target vantrel_install_data
	cmake --install $(BUILD) --prefix $(PREFIX)

clean:
	rm -rf $(BUILD) $(SAN_BUILD) $(FUZZ_BUILD)
