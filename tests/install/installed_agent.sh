#!/bin/sh
# SPDX-License-Identifier: MIT
# The example agent builds against an installed copy, found by pkg-config and by CMake, and runs in
# the virtual access point of that copy.
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

cmake --install "$build" --prefix "$prefix" >/dev/null
libdir=$(dirname "$(find "$prefix" -name liborlovendor.so -not -path '*/device-root/*')")
private=$libdir/orlovendor
export PKG_CONFIG_PATH="$libdir/pkgconfig"

# Away from the source tree: only what is installed may be found.
mkdir "$work/agent"
cp "$agent/agent.c" "$agent/CMakeLists.txt" "$work/agent"
cd "$work"
# shellcheck disable=SC2046,SC2086  # flags are words
"$compiler" $flags agent/agent.c -o by-pkg-config $(pkg-config --cflags --libs orlovendor)
cmake -S agent -B by-cmake -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_C_COMPILER="$compiler" \
    -DCMAKE_C_FLAGS="$flags" >/dev/null
cmake --build by-cmake >/dev/null

"$private/build-device-root"
cp by-pkg-config by-cmake/example-agent "$private/device-root/usr/bin"

# No driver answers here: an agent of its own is no part of the simulated one.
said=$("$prefix/bin/virtual-ap" -- sh -c 'by-pkg-config && example-agent') || exit $?
expected='radio 1: channel -1, power 75%, "Example" is up
already applied
radio 1: channel -1, power 75%, "Example" is up'
if [ "$said" != "$expected" ]; then
    echo "the agent says: $said" >&2
    exit 1
fi

version=$("$prefix/bin/orloctl" --version)
if [ "$version" != "orloctl $(pkg-config --modversion orlovendor)" ]; then
    echo "orloctl says: $version" >&2
    exit 1
fi
