#!/bin/sh
# An agent builds and runs against an installed copy, found by pkg-config and by CMake.
#
# usage: installed_agent.sh BUILD_FOLDER AGENT_FOLDER C_COMPILER [C_FLAG...]
set -eu
build=$1
agent=$2
compiler=$3
shift 3
flags="$*"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
expected='132 operations, wdev1ap15, reserved: 0'

expect_agent() { # PROGRAM
    answer=$(LD_LIBRARY_PATH=$libdir "$1")
    if [ "$answer" != "$expected" ]; then
        echo "$1 says: $answer" >&2
        exit 1
    fi
}

cmake --install "$build" --prefix "$prefix" >/dev/null
libdir=$(dirname "$(find "$prefix" -name liborlovendor.so -not -path '*/device-root/*')")

# The prefix was chosen at install time: tell pkg-config.
export PKG_CONFIG_PATH="$libdir/pkgconfig"
# shellcheck disable=SC2046,SC2086  # flags are words
"$compiler" $flags "$agent/agent.c" -o "$work/by-pkg-config" \
    $(pkg-config --define-variable=prefix="$prefix" --cflags --libs orlovendor)
expect_agent "$work/by-pkg-config"

cmake -S "$agent" -B "$work/build" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_C_COMPILER="$compiler" \
    -DCMAKE_C_FLAGS="$flags" >/dev/null
cmake --build "$work/build" >/dev/null
expect_agent "$work/build/agent"
