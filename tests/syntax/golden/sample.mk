# Builds the samples, with what makes make hard to colour: don't stop at 'quotes' or "these".
SHELL := /bin/bash
.SHELLFLAGS := -eu -o pipefail -c
.DEFAULT_GOAL := all
.SUFFIXES:
.DELETE_ON_ERROR:

VERSION ?= 1.4.0
prefix = /usr/local
bindir = $(prefix)/bin
override CFLAGS += -std=c17 -Wall -Wextra -O2 -g3
CPPFLAGS := -DVERSION='"$(VERSION)"' -Iinclude # a comment behind a value
LDLIBS != pkg-config --libs zlib
hash := \#not-a-comment
dollar = $$HOME and $${HOME}

sources := $(sort $(wildcard src/*.c src/*/*.c))
objects := $(patsubst src/%.c,build/%.o,$(sources))
depends := $(objects:.o=.d)
tests = $(foreach t,$(wildcard tests/*.c),$(basename $(notdir $(t))))
long = one \
       two \
       three

ifeq ($(origin CC),default)
CC = gcc
endif
ifneq (,$(filter debug,$(MAKECMDGOALS)))
  CFLAGS += -O0 -fsanitize=address,undefined
else ifdef RELEASE
  CFLAGS += -DNDEBUG -flto=$(shell nproc)
else
  $(info building $(words $(sources)) files in $(CURDIR))
endif

ifndef NO_COLOUR
green := $(shell tput setaf 2)
plain := $(shell tput sgr0)
endif

define run_test
	@printf '%s\n' "$(green)running $(1)$(plain)"
	./build/tests/$(1) || { echo "$(1) failed: $$?" >&2; exit 1; }
endef

export PATH := $(CURDIR)/tools:$(PATH)
vpath %.c src tests

.PHONY: all debug release check clean install help
.PRECIOUS: build/%.o
.INTERMEDIATE: version.h

all: samples docs/samples.1.gz
debug release: all

samples: $(objects) | build
	$(CC) $(LDFLAGS) -o $@ $^ $(LDLIBS)

build/%.o: src/%.c version.h Makefile
	@mkdir -p $(@D)
	$(CC) $(CPPFLAGS) $(CFLAGS) -MMD -MP -c -o $@ $<

build build/tests:
	mkdir -p $@

version.h: VERSION_FILE := VERSION
version.h:
	@echo '#define VERSION "$(VERSION)"' >$@.tmp # still the shell's
	@cmp -s $@.tmp $@ || mv $@.tmp $@

build/tests/%: tests/%.c $(filter-out build/main.o,$(objects)) | build/tests
	$(CC) $(CPPFLAGS) $(CFLAGS) -o $@ $+ $(LDLIBS)

check:: $(addprefix build/tests/,$(tests))
	$(foreach t,$(tests),$(call run_test,$(t)))
	@for file in tests/*.txt; do \
	    if ! ./samples "$$file" | diff - "$${file%.txt}.out"; then \
	        echo "$$file differs: $$# # of $$?"; exit 1; \
	    fi; \
	done

%.1.gz: %.1
	gzip -9 --keep --force $<

install: samples docs/samples.1.gz
	install -D -m 755 $< $(DESTDIR)$(bindir)/samples
	install -D -m 644 docs/samples.1.gz "$(DESTDIR)$(prefix)/share/man/man1/"

help: ## lists the targets
	@sed -n 's/^\([a-z]*\):.*## /\1\t/p' $(MAKEFILE_LIST)

clean: ; -$(RM) -r build samples $(wildcard docs/*.gz)

archive(member.o): member.o
	$(AR) $(ARFLAGS) $@ $%

$(tests): %: build/tests/%
	./$<

-include $(depends)
include config.mk
