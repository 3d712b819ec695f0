#!/usr/bin/env bash
# pkg_config.sh COMPILER LIBDIR OUTPUT [FLAGS...]: builds and runs the consumer by pkg-config. A program
# at a fixed address has copies of the objects that it uses of a library.
set -euo pipefail
compiler=$1 libdir=$2 output=$3
shift 3
export PKG_CONFIG_PATH=$libdir/pkgconfig
read -ra flags <<<"$(pkg-config --cflags --libs vxattribute)"
for kind in "-fPIE -pie" "-fno-pie -no-pie" "-fPIE -pie -fvisibility=hidden -fvisibility-inlines-hidden"; do
    read -ra options <<<"$kind"
    "$compiler" -std=c++20 "$@" "${options[@]}" "$(dirname "$0")/consumer/main.cpp" -o "$output" \
        "${flags[@]}" "-Wl,-rpath,$libdir"
    "$output" || { echo "consumer with $kind failed" >&2; exit 1; }
done
