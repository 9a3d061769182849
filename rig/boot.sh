#!/bin/sh
# SPDX-License-Identifier: MIT
# Boots the machine with a folder that it shares, and ends with the status of the job in there.
#
# usage: boot.sh RIG_FOLDER SHARE SECONDS [shell]
#   SECONDS  of the host's time after which the machine is ended; 0: never
#   shell    its console is this terminal; Ctrl-A x ends it
set -eu

rig=$1
share=$2
limit=$3
if [ "${4-}" = shell ]; then
    console=mon:stdio
    pace=
else
    console=file:$share/console.log
    # A time of its own: it counts instructions, and skips what it would only wait.
    pace='-icount shift=3,sleep=off'
fi

status=0
# Emulated on any machine, and not in a hurry: it takes all of a core.
# shellcheck disable=SC2086 # words
timeout --foreground -k 5 "$limit" nice qemu-system-x86_64 -accel tcg -smp 1 -m 320 $pace \
    -nodefaults -nographic -no-reboot -serial "$console" \
    -kernel "$rig/vmlinux" -initrd "$rig/initramfs" \
    -append 'console=ttyS0 panic=-1 mitigations=off quiet' \
    -fsdev "local,id=share,path=$share,security_model=none" \
    -device virtio-9p-pci,fsdev=share,mount_tag=share \
    -device isa-debug-exit,iobase=0xf4,iosize=1 || status=$?

# Odd: the job's status, twice and one. Even: the machine died, whatever it says.
case $status in
124 | 137) echo "The machine was ended after $limit seconds." >&2 ;;
*[13579]) exit $((status / 2)) ;;
esac
exit 99
