#!/bin/sh
# Proves the install: puts the build into a fresh prefix, builds the C example against it
# once through the CMake package and once through pkg-config, and runs both and the tool.
# Arguments: build directory, source directory, work directory, extra C flags (may be empty).
set -eu
build=$1 source=$2 work=$3 flags=${4:-}

rm -rf "$work" && mkdir -p "$work/run"
cmake --install "$build" --prefix "$work/prefix" >/dev/null

cmake -S "$source/examples/c" -B "$work/example" -DCMAKE_PREFIX_PATH="$work/prefix" \
      -DCMAKE_C_FLAGS="$flags" >/dev/null
cmake --build "$work/example" >/dev/null
(cd "$work/run" && "$work/example/readings")

libdir=$(dirname "$(find "$work/prefix" -name ormak.pc)")
export PKG_CONFIG_PATH="$libdir"
cc $flags "$source/examples/c/readings.c" $(pkg-config --cflags --libs ormak) \
   -Wl,-rpath,"$(pkg-config --variable=libdir ormak)" -o "$work/readings-pc"
(cd "$work/run" && "$work/readings-pc")

"$work/prefix/bin/ormak" -e 'SHOW ORMAK VERSION'
