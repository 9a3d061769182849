#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds and runs the fuzz targets; started by ./run fuzz, which installs what is needed.
#
#   fuzz.sh [SECONDS] [TARGET...]    each target, or those named, for so long; what is found lies in
#                                    build-fuzz/findings, and the coverage is shown
#   fuzz.sh coverage                 what the inputs that are known so far reach
set -eu
cd "$(dirname "$0")/.."

build='build-fuzz'
jobs=$(nproc)

# A target, and the sources that it is for.
targets='store-config platform/libuci
store-staged platform/libuci
store-lookup platform/libuci
driver src/driver
stations src/clients/client_scan.cpp src/quilt/scan.cpp
mesh src/meshlink/place.cpp src/meshlink/counters.cpp src/meshlink/link_speed.cpp src/meshlink/address.cpp src/meshlink/status_report.cpp src/meshlink/statistics_report.cpp
quilt src/quilt/status.cpp src/quilt/scan.cpp
counters src/clients/interface_counters.cpp src/clients/traffic_statistics.cpp src/clients/traffic_totals.cpp
operations src
records tools/orloctl/records'

names() {
    echo "$targets" | cut -d ' ' -f 1
}

sources_of() { # sources_of TARGET
    echo "$targets" | sed -n "s/^$1 //p"
}

build_targets() {
    echo "Building in $build"
    mkdir -p $build
    if ! { cmake --preset fuzz && cmake --build $build -j "$jobs"; } >$build/build.log 2>&1; then
        tail -n 60 $build/build.log >&2
        exit 1
    fi
}

# Inputs that reach something new are kept in the build folder, for the next run to begin with.
run_target() { # run_target SECONDS TARGET
    found=$build/corpus/$2
    findings=$build/findings/$2
    mkdir -p "$found" "$findings"
    set -- "$1" "$2" -max_len=16384
    case $2 in
    store-*) set -- "$@" -dict=fuzz/store.dict ;;
    records) ;;
    *) set -- "$@" -dict=fuzz/device.dict ;;
    esac
    seconds=$1
    target=$2
    shift 2
    if LLVM_PROFILE_FILE=/dev/null "$build/fuzz-$target" -max_total_time="$seconds" -timeout=10 \
        -rss_limit_mb=1024 -artifact_prefix="$findings/" "$@" "$found" "fuzz/corpus/$target" \
        >"$findings.log" 2>&1; then
        runs=$(sed -n 's/^Done \([0-9]*\) runs.*/\1/p' "$findings.log")
        printf '%-14s %9s inputs, nothing found\n' "$target" "$runs"
        return 0
    fi
    {
        grep -v -E '^#[0-9]+' "$findings.log" | tail -n 40
        sed -n "s|^artifact_prefix.*Test unit written to |$target FAILED; once more: $build/fuzz-$target |p" \
            "$findings.log"
    } >&2
    return 1
}

tool() { # tool NAME
    command -v "$1" || command -v "$1-14"
}

show_coverage() {
    rm -rf $build/coverage
    mkdir -p $build/coverage
    cov=$(tool llvm-cov)
    profdata=$(tool llvm-profdata)
    printf '\n%-14s %7s %8s  %s\n' target lines covered 'of the sources'
    for target in $(names); do
        mkdir -p "$build/corpus/$target"
        profile=$build/coverage/$target
        LLVM_PROFILE_FILE="$profile-%m.profraw" "$build/fuzz-$target" -runs=0 \
            "$build/corpus/$target" "fuzz/corpus/$target" >"$profile.log" 2>&1
        "$profdata" merge -o "$profile" "$profile"-*.profraw
        show_lines "$target" "$profile" "$(sources_of "$target")" "$build/fuzz-$target"
    done
    "$profdata" merge -o $build/coverage/all $build/coverage/*.profraw
    set --
    for target in $(names); do
        set -- "$@" -object "$build/fuzz-$target"
    done
    show_lines 'all together' $build/coverage/all 'src platform/libuci tools/orloctl/records' "$@"
}

# One line of the table.
show_lines() { # show_lines TITLE PROFILE SOURCES PROGRAM...
    title=$1
    profile=$2
    sources=$3
    shift 3
    "$cov" report -instr-profile="$profile" -ignore-filename-regex='/cli/' "$@" \
        -object $build/libuci.so |
        awk -v title="$title" -v sources="$sources" '
            BEGIN { count = split(sources, wanted, " ") }
            {
                for (i = 1; i <= count; i++)
                    if (index($1, wanted[i])) { lines += $8; missed += $9; break }
            }
            END {
                covered = lines ? 100 * (lines - missed) / lines : 0
                printf "%-14s %7d %7.1f%%  %s\n", title, lines, covered, sources
            }'
}

case ${1:-300} in
coverage)
    build_targets
    show_coverage
    ;;
one) # a part of this script's own run
    run_target "$2" "$3"
    ;;
*[!0-9]*)
    echo "fuzz: '$1' is no number of seconds" >&2
    exit 2
    ;;
*)
    seconds=${1:-300}
    [ $# -eq 0 ] || shift
    for target in "$@"; do
        if ! names | grep -qx -e "$target"; then
            echo "fuzz: no target '$target'; there are:" >&2
            names >&2
            exit 2
        fi
    done
    [ $# -gt 0 ] || {
        # shellcheck disable=SC2046  # one word each
        set -- $(names)
    }
    build_targets
    failed=0
    printf '%s\n' "$@" | xargs -P "$jobs" -n 1 "$0" one "$seconds" || failed=1
    [ $failed -eq 0 ] || exit 1
    show_coverage
    ;;
esac
