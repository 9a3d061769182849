#!/bin/sh
# SPDX-License-Identifier: MIT
# Stand-in of the script that reboots the access point.
# shellcheck source=../lib/device/stand-in.sh
. /usr/lib/device/stand-in.sh
record "$@"

sync
reboot
