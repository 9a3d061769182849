#!/bin/sh
# Boots the machine with a folder that it shares, and ends with the status of the job in there. The
# machine has a time of its own: it counts instructions, and skips what it would only wait.
#
# usage: boot.sh RIG_FOLDER SHARE SECONDS [shell]
#   SECONDS  of the host's time after which the machine is ended; 0: never
set -eu

rig=$1
share=$2
limit=$3
console="file:$share/console.log"
[ "${4-}" != shell ] || console=stdio

status=0
# Not in a hurry: a machine that is emulated takes all of a core.
timeout -k 5 "$limit" nice qemu-system-x86_64 -accel tcg -smp 1 -m 320 -nodefaults -nographic \
    -no-reboot -icount shift=3,sleep=off \
    -serial "$console" -kernel "$rig/vmlinux" -initrd "$rig/initramfs" \
    -append 'console=ttyS0 panic=-1 mitigations=off quiet' \
    -fsdev "local,id=share,path=$share,security_model=none" \
    -device virtio-9p-pci,fsdev=share,mount_tag=share \
    -device isa-debug-exit,iobase=0xf4,iosize=1 || status=$?

case $status in
124 | 137) echo "The machine was ended after $limit seconds." >&2 ;;
esac
# Odd: the job's status, twice and one. Even: the machine died, whatever it says.
[ $((status % 2)) = 1 ] || exit 99
exit $((status / 2))
