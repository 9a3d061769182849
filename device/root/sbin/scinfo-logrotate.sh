#!/bin/sh
# SPDX-License-Identifier: MIT
# Stand-in of the log rotation: the messages so far become messages.1. It does so at any size when
# told to (FORCE), otherwise from 64 kB on.
# shellcheck source=../usr/lib/device/stand-in.sh
. /usr/lib/device/stand-in.sh
record "$@"

messages=/var/log/messages
[ -e "$messages" ] || exit 0
if [ "$1" = FORCE ] || [ "$(stat -c %s "$messages")" -ge 65536 ]; then
    mv "$messages" "$messages.1"
    : >"$messages"
fi
