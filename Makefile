# The front door. What is behind it: CMakePresets.json, scripts/, tests/.
PRESET ?= dev
TIME ?= 600
PYTEST = VXCLI_BUILD=build/$(PRESET) /usr/bin/python3 -m pytest -n auto tests

.PHONY: help setup build demo test asan arm64 fuzz torture coverage bench package lint
help:
	@echo 'make demo    calibrate the transceiver of a virtual unit, showing each command'
	@echo 'make test    build and run all tests'
	@echo 'make build   build into build/dev; PRESET=release, PRESET=asan: another preset'
	@echo 'make asan    all tests with the address and undefined-behaviour sanitizers'
	@echo 'make arm64   build for arm64, all tests under qemu'
	@echo 'make package Debian packages of the release; PRESET=arm64: for arm64'
	@echo 'make fuzz    run the fuzzers for TIME=600 seconds in all; TARGET=commands: only this one'
	@echo 'make torture kills and crowds: the long form of what "make test" does in short, with its figures'
	@echo 'make coverage the tests, and which lines they execute'
	@echo 'make bench   what vxcli costs: start-up, bus work, size, growth, with targets'
	@echo 'make lint    check format and style'
	@echo 'make setup   install what these need (each of them does so by itself)'

setup:
	@scripts/setup

build: setup
	@scripts/build $(PRESET)

demo:
	@scripts/demo

test: build
	$(PYTEST)

asan:
	@$(MAKE) --no-print-directory test PRESET=asan

arm64: PRESET = arm64-qemu
arm64:
	@scripts/setup --ci
	@scripts/qemu-tree
	$(PYTEST)

package: PRESET = release
package:
	@scripts/setup $(if $(filter arm64,$(PRESET)),--ci)
	@scripts/package $(PRESET)

fuzz:
	@scripts/setup --ci
	@scripts/fuzz run $(TIME) $(TARGET)

torture: build
	VXCLI_TORTURE=1 VXCLI_BUILD=build/$(PRESET) /usr/bin/python3 -m pytest -n auto -rP \
		tests/board/test_power_loss.py tests/cli/test_two_at_once.py

coverage:
	@scripts/setup --ci
	@scripts/coverage

bench:
	@scripts/setup --bench
	@scripts/build release
	@scripts/build arm64
	@cost/cost.py

lint: build
	@scripts/setup --ci
	@scripts/lint
