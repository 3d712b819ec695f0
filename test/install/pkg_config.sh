#!/usr/bin/env bash
# pkg_config.sh COMPILER LIBDIR OUTPUT [FLAGS...]: builds and runs the consumer by pkg-config.
set -euo pipefail
compiler=$1 libdir=$2 output=$3
shift 3
export PKG_CONFIG_PATH=$libdir/pkgconfig
read -ra flags <<<"$(pkg-config --cflags --libs vxattribute)"
"$compiler" -std=c++20 "$@" "$(dirname "$0")/consumer/main.cpp" -o "$output" "${flags[@]}" "-Wl,-rpath,$libdir"
"$output"
