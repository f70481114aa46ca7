# Two entry points for a fresh machine: `make run` and `make test`.
BUILD ?= build
JOBS  ?= $(shell nproc)
SANITIZE ?= OFF

.PHONY: deps build run test sanitize clean

deps:
	@bash scripts/install-deps.sh

build: deps
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORMAK_SANITIZE=$(SANITIZE) >/dev/null
	@cmake --build $(BUILD) -j $(JOBS) -- --no-print-directory

run: build
	@rm -rf $(BUILD)/quickstart && mkdir -p $(BUILD)/quickstart
	@echo "The three warmest readings:"
	@cd $(BUILD)/quickstart && ../cli/ormak ../../examples/quickstart.ormak
	@echo "The table, as results/temperature.txt holds it:"
	@cat $(BUILD)/quickstart/results/temperature.txt
	@echo "The quick-start script ran without an error."


test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

# The same tests under AddressSanitizer and UndefinedBehaviorSanitizer.
sanitize:
	@$(MAKE) test BUILD=build-sanitize SANITIZE=ON

clean:
	rm -rf build build-sanitize
