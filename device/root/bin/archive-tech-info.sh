#!/bin/sh
# SPDX-License-Identifier: MIT
# Stand-in of the script that packs what support needs to know: archive-tech-info.sh NAME makes
# NAME.zip of the configuration, the messages and the crash logs.
# shellcheck source=../usr/lib/device/stand-in.sh
. /usr/lib/device/stand-in.sh
record "$@"

[ $# -eq 1 ] || refuse 'usage: archive-tech-info.sh NAME'
set -- "$1" /etc/config/* /var/log/messages /flash/crash/*
archive=$1.zip
shift
for file; do
    shift
    [ ! -f "$file" ] || set -- "$@" "$file"
done
exec /usr/bin/lua /usr/lib/device/zip.lua "$archive" "$@"
