#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds the template of the virtual access point: the files of device/root, busybox with the
# applets of device/applets, the shell, lua, openssl, the time zones, and the programs and libraries
# given, with every library that these need.
#
# usage: build-root.sh DEVICE_FOLDER OUTPUT FILE...
#   OUTPUT  is replaced; its last part has to be "device-root"
#   FILE    a program goes to /usr/bin, a library (*.so) to /usr/lib, an example (*.json) to
#           /usr/share/examples
set -eu

packages='busybox-static dash lua5.1 openssl tzdata'

fail() {
    echo "build-root.sh: $1" >&2
    exit 1
}

[ $# -ge 2 ] || fail 'usage: build-root.sh DEVICE_FOLDER OUTPUT FILE...'
device=$1
output=$2
shift 2
[ "${output##*/}" = device-root ] || fail "\"$output\" does not end in /device-root"
new=$output.new
old=$output.old

# Prints the path of a program of this machine.
program() {
    command -v "$1" || fail "$1 is missing: apt-get install $packages"
}

install_file() { # FROM PATH-BELOW-ROOT
    mkdir -p "$new/${2%/*}"
    cp -L "$1" "$new/$2"
}

# System libraries keep their path, which the loader searches anyway; those of the build folder and
# of other places go to /usr/lib.
install_needed_libraries() { # FILE...
    ldd "$@" 2>/dev/null | awk '
        $2 == "=>" && $3 ~ /^\// { print $3, $1 }
        $1 ~ /^\// && $2 ~ /^\(/ { print $1, $1 }' | sort -u |
        while read -r path name; do
            case $path in
            */orlovendor/*) install_file "$path" "usr/lib/${name##*/}" ;; # searched by no loader
            /lib/* | /lib64/* | /usr/lib/*) install_file "$path" "${path#/}" ;;
            *) install_file "$path" "usr/lib/${name##*/}" ;;
            esac
        done
}

install_busybox() {
    busybox=$(program busybox)
    if ldd "$busybox" >/dev/null 2>&1; then
        fail "$busybox is not static: apt-get install $packages"
    fi
    install_file "$busybox" bin/busybox
    grep -v '^#' "$device/applets" | while read -r applet; do
        ln -s busybox "$new/bin/$applet"
    done
}

# The radios and their VAPs as ifconfig and the simulated driver find them; the first VAP of each
# radio is up.
make_wireless_interfaces() {
    run=$new/var/run/device
    for radio in 0 1; do
        mac=02:00:00:00:0$radio
        echo "wdev$radio up $mac:ff" >>"$run/interfaces"
        state=up
        for vap in 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15; do
            name=wdev${radio}ap$vap
            bssid=$mac:$(printf %02x "$vap")
            echo "$name $state $bssid" >>"$run/interfaces"
            printf 'name IEEE 802.11\nbssid %s\nprivate setcmd 8be4 2100 0\n' "$bssid" \
                >"$run/driver/$name"
            state=down
        done
    done
}

# A line for each time zone of this machine: its name and its POSIX text, with which its file ends.
make_time_zones() {
    zones=/usr/share/zoneinfo
    [ -r "$zones/Etc/UTC" ] || fail "$zones is missing: apt-get install $packages"
    (
        cd "$zones"
        find -L [A-Z]* -type f | LC_ALL=C sort >"$new/tmp/names"
        xargs tail -q -n 1 <"$new/tmp/names" >"$new/tmp/texts"
    )
    paste -d ' ' "$new/tmp/names" "$new/tmp/texts" >"$new/usr/share/time-zones"
    rm "$new/tmp/names" "$new/tmp/texts"
}

rm -rf "$new" "$old"
mkdir -p "$new"
for folder in bin sbin usr/bin usr/sbin usr/lib lib lib64 etc var/lib/modules var/log var/run flash/crash dev mnt proc \
    www tmp root sys; do
    mkdir -p "$new/$folder"
done
(cd "$device/root" && tar cf - .) | tar xf - -C "$new" --no-same-owner
ln -s ../var/lib/modules "$new/lib/modules" # kernel modules come and go, other libraries do not
make_wireless_interfaces
make_time_zones
install_busybox
dash=$(program dash)
lua=$(program lua5.1)
openssl=$(program openssl)
install_file "$dash" bin/sh
install_file "$lua" usr/bin/lua
install_file "$openssl" usr/bin/openssl
for file in "$@"; do
    case $file in
    *.json) install_file "$file" "usr/share/examples/${file##*/}" ;;
    *.so) install_file "$file" "usr/lib/${file##*/}" ;;
    *) install_file "$file" "usr/bin/${file##*/}" ;;
    esac
done
install_needed_libraries "$dash" "$lua" "$openssl" "$@"
chmod -R a+rX,u+w "$new"
chmod -R a+x "$new/bin" "$new/sbin" "$new/usr/bin" "$new/usr/sbin" "$new/usr/share/demo"
if [ -d "$output" ]; then
    mv "$output" "$old"
fi
mv "$new" "$output"
rm -rf "$old"
