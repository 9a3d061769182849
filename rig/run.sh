#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs scenarios in the machine and tells what came of them.
#
# usage: run.sh BUILD_FOLDER [--shell | SCENARIO...]
#   Without scenarios those that have a number.
set -eu

rig=$(cd "$1" && pwd)/rig
shift
here=$(cd "$(dirname "$0")" && pwd)
share=$rig/share
limit=900 # seconds; a soak takes longer
[ "${1-}" != soak ] || limit=3600
limit=${ORLO_RIG_SECONDS:-$limit}

"$here/build.sh" "${rig%/rig}"
rm -rf "$share"
mkdir -p "$share/logs"
cp -r "$here/scenarios" "$share/scenarios"

cp "$here/scenarios/machine.sh" "$share/job"
if [ "${1-}" = --shell ]; then
    exec "$here/boot.sh" "$rig" "$share" 0 shell
fi

if [ $# -eq 0 ]; then
    set -- "$here"/scenarios/[0-9]*.sh
fi
for name; do
    name=${name##*/}
    name=${name%.sh}
    [ -e "$here/scenarios/$name.sh" ] || {
        echo "./run rig: there is no scenario '$name'" >&2
        exit 2
    }
    echo "$name"
done >"$share/list"
cat >"$share/settings" <<END
export ORLO_RIG_PUSHES=${ORLO_RIG_PUSHES:-50} ORLO_RIG_SEED=${ORLO_RIG_SEED:-1}
END

echo "Running $(wc -l <"$share/list") scenarios in a machine with Linux $(cat "$rig/kernel-release")"
: >"$share/results"
tail -f "$share/results" & # as they end
follower=$!
trap 'kill "$follower" 2>/dev/null' EXIT
status=0
"$here/boot.sh" "$rig" "$share" "$limit" || status=$?
sleep 0.2
kill "$follower"

sed -n 's,^FAILED *\([^ ]*\) .*,\1,p' "$share/results" | while read -r log; do
    printf '\n== %s\n' "$log"
    cat "$share/logs/$log.log"
done
passed=$(grep -c '^ok' "$share/results" || true)
if [ "$(wc -l <"$share/results")" -ne "$(wc -l <"$share/list")" ]; then
    echo "The machine ended before its scenarios did (status $status); its console:" >&2
    tail -n 40 "$share/console.log" >&2
    status=1
fi
printf '\n%d passed, %d failed\n' "$passed" $(($(wc -l <"$share/list") - passed))
exit "$status"
