#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds the machine: its kernel, the driver's face and the initramfs, from Debian packages and from
# what the build folder holds. What has been fetched and unpacked once is kept.
#
# usage: build.sh BUILD_FOLDER
#   Everything goes to BUILD_FOLDER/rig. Ends with 77 where the packages cannot be had.
set -eu

build=$(cd "$1" && pwd)
cd "$(dirname "$0")"
out=$build/rig
log=$out/build.log

# What the machine runs, unpacked and never installed. Of its libraries those are taken that
# the programs need.
guest_packages='busybox-static dash hostapd wpasupplicant iw wireless-tools iproute2 wireless-regdb
    libc6 libgcc-s1 libstdc++6 libjansson4 libglib2.0-0 libpcre2-8-0 libssl3 libnl-3-200
    libnl-genl-3-200 libnl-route-3-200 libdbus-1-3 libsystemd0 libcap2 libgcrypt20 libgpg-error0
    liblz4-1 liblzma5 libzstd1 libpcsclite1 libreadline8 libtinfo6 libiw30 libmnl0 libelf1 libbsd0
    libmd0 libbpf1 libselinux1 zlib1g libtirpc3 libdb5.3 libxtables12 libgssapi-krb5-2 libkrb5-3
    libk5crypto3 libcom-err2 libkrb5support0 libkeyutils1'

# The kernel modules that the machine loads; what these need comes with them.
kernel_modules='mac80211_hwsim virtio_pci 9p 9pnet_virtio bridge ccm ctr cmac gcm ghash-generic'

cannot() {
    printf './run rig: %s\n' "$1" >&2
    exit 77
}

fail() {
    printf './run rig: %s\n' "$1" >&2
    tail -n 20 "$log" >&2
    exit 1
}

# once NAME COMMAND...: runs a step that has not been done yet.
once() {
    stamp=$out/stamps/$1
    shift
    [ ! -e "$stamp" ] || return 0
    "$@"
    touch "$stamp"
}

newer() { # FILE THAN...: whether one of the others is newer than the file, or it is not there
    file=$1
    shift
    [ ! -e "$file" ] || [ -n "$(find "$@" -newer "$file" | head -n 1)" ]
}

# The kernel that Debian ships at present; its headers come in the same version.
choose_kernel() {
    [ "$(id -u)" -ne 0 ] || timeout 120 apt-get update -q >>"$log" 2>&1 || true # what is known may do
    release=$(apt-cache depends linux-image-amd64 2>>"$log" |
        sed -n 's/.*Depends: linux-image-\(.*-amd64\)$/\1/p')
    [ -n "$release" ] || cannot 'no kernel package for this machine is known to apt-get'
    echo "$release" >"$out/kernel-release"
}

fetch() { # fetch FOLDER PACKAGE...
    folder=$1
    shift
    rm -rf "$folder"
    mkdir -p "$folder"
    (cd "$folder" && timeout 300 apt-get -o Acquire::Retries=1 -o Acquire::http::Timeout=20 \
        download -q "$@") >>"$log" 2>&1 ||
        cannot "the Debian packages of the machine cannot be fetched ($log tells more)"
}

unpack() { # unpack FOLDER PACKAGE-FILE...
    folder=$1
    shift
    for file in "$@"; do
        dpkg -x "$file" "$folder"
        rm "$file"
    done
}

fetch_kernel() {
    kbuild=linux-kbuild-${release%%.*}.$(echo "$release" | cut -d . -f 2)
    fetch "$out/fetched" "linux-image-$release" "linux-headers-$release" \
        "linux-headers-${release%-amd64}-common" "$kbuild"
    rm -rf "$kernel"
    unpack "$kernel" "$out"/fetched/linux-*.deb
    # The headers expect to be installed; beside each other they are found, too.
    sed -i "s,/usr/src,..," "$kernel/usr/src/linux-headers-$release/Makefile"
}

# The boot image holds the kernel, compressed. Uncompressed it starts in half the time.
uncompress_kernel() {
    image=$kernel/boot/vmlinuz-$release
    offset=$(LC_ALL=C grep -abo -m 1 -P '\xFD7zXZ\x00' "$image" | head -n 1 | cut -d : -f 1)
    [ -n "$offset" ] || fail "no compressed kernel in $image"
    tail -c +$((offset + 1)) "$image" | xz -dc --single-stream >"$out/vmlinux" 2>>"$log" || true
    [ -s "$out/vmlinux" ] || fail "$image cannot be uncompressed"
}

# Keeps the modules that are needed out of some four thousand.
choose_modules() {
    depmod -b "$kernel" "$release" 2>>"$log"
    modules=$out/modules
    rm -rf "$modules"
    for module in $kernel_modules; do
        modprobe -d "$kernel" -S "$release" --show-depends "$module" 2>>"$log"
    done | awk -v root="$kernel/" '$1 == "insmod" { sub(root, "", $2); print $2 }' | sort -u |
        (cd "$kernel" && cpio -pdm --quiet "$modules" 2>>"$log")
    cp "$kernel/lib/modules/$release/modules.order" "$kernel/lib/modules/$release/modules.builtin" \
        "$kernel/lib/modules/$release/modules.builtin.modinfo" "$modules/lib/modules/$release/"
    rm -rf "$kernel/lib/modules"
}

fetch_tools() {
    # shellcheck disable=SC2086 # names
    fetch "$out/fetched" $guest_packages
    rm -rf "$out/tools"
    unpack "$out/tools" "$out"/fetched/*.deb
    rm -rf "$out/tools/usr/share/doc" "$out/tools/usr/share/man" "$out/tools/usr/share/locale"
}

# The certificates of the RADIUS server that the machine runs for its own stations.
make_certificates() {
    mkdir -p "$out/certificates"
    openssl req -x509 -newkey rsa:2048 -nodes -days 7300 -subj '/CN=radius.test' \
        -keyout "$out/certificates/server.key" -out "$out/certificates/server.pem" 2>>"$log"
}

build_driver() {
    newer "$out/wdev.ko" driver || return 0
    rm -rf "$out/driver"
    cp -r driver "$out/driver"
    make -C "$kernel/usr/src/linux-headers-$release" M="$out/driver" W=1 modules >>"$log" 2>&1 ||
        fail 'the kernel module does not build'
    strip --strip-debug -o "$out/wdev.ko" "$out/driver/wdev.ko"
}

# Copies the libraries that the files need, and those that these need.
install_libraries() { # ROOT FILE...
    root=$1
    shift
    while [ $# -gt 0 ]; do
        names=$(objdump -p "$@" 2>/dev/null | awk '$1 == "NEEDED" { print $2 }' | sort -u)
        set --
        for name in $names; do
            [ ! -e "$root/usr/lib/$name" ] || continue
            library=$(find "$out/tools/lib" "$out/tools/usr/lib" "$build" -maxdepth 2 -name "$name" | head -n 1)
            [ -n "$library" ] || fail "the machine has no $name"
            strip --strip-debug -o "$root/usr/lib/$name" "$library"
            set -- "$@" "$root/usr/lib/$name"
        done
    done
}

programs='usr/sbin/hostapd usr/sbin/hostapd_cli sbin/wpa_supplicant sbin/wpa_cli sbin/iw sbin/iwconfig
    sbin/iwpriv bin/ip bin/dash bin/busybox'

# The access point's root: its own configuration as the virtual access point has it, the real tools
# and the files of image/.
build_root() {
    root=$out/root
    tools=$out/tools
    rm -rf "$root"
    mkdir -p "$root/bin" "$root/sbin" "$root/usr/bin" "$root/usr/sbin" "$root/usr/lib" "$root/lib" \
        "$root/lib64" "$root/etc" "$root/tmp" "$root/proc" "$root/sys" "$root/dev" "$root/share" \
        "$root/var/log" "$root/var/run" "$root/run"
    for program in $programs; do
        cp -L "$tools/$program" "$root/$program"
    done
    for tool in iwconfig iwpriv; do # where the access point has them
        mv "$root/sbin/$tool" "$root/usr/sbin/$tool"
    done
    mv "$root/bin/dash" "$root/bin/sh"
    "$root/bin/busybox" --list | while read -r applet; do
        case $applet in
        sh | ash | busybox | ip | hostapd*) ;;
        *) ln -s busybox "$root/bin/$applet" ;;
        esac
    done
    ln -s ../bin/busybox "$root/sbin/modprobe" # the kernel asks for it by this name
    cp -L "$tools/lib64/ld-linux-x86-64.so.2" "$root/lib64/"
    modules_of_openssl=usr/lib/x86_64-linux-gnu/ossl-modules
    mkdir -p "$root/$modules_of_openssl"
    cp "$tools/$modules_of_openssl/legacy.so" "$root/$modules_of_openssl/"
    cp -a ../device/root/etc/. "$root/etc/"
    cp -a image/root/. "$root/"
    mkdir -p "$root/usr/share/examples" "$root/etc/radius"
    cp ../examples/*.json "$root/usr/share/examples/"
    cp "$out"/certificates/* "$root/etc/radius/"
    strip --strip-debug -o "$root/usr/lib/liborlovendor.so" "$build/liborlovendor.so"
    for program in orloctl uci; do
        strip -o "$root/usr/bin/$program" "$build/$program"
    done
    for program in datagrams soak; do
        gcc -std=c11 -D_GNU_SOURCE -O2 -Wall -Wextra -Wconversion -Werror -I ../include \
            -o "$root/usr/bin/$program" "programs/$program.c" -ldl >>"$log" 2>&1 ||
            fail "$program does not build"
    done
    install_libraries "$root" "$root"/usr/sbin/* "$root"/usr/bin/* "$root"/sbin/* \
        "$root/bin/ip" "$root/bin/sh" "$root/usr/lib/liborlovendor.so" \
        "$root/$modules_of_openssl/legacy.so"
    cp -a "$out/modules/." "$root/"
    mkdir -p "$root/lib/modules/$release/extra" "$root/lib/firmware"
    cp "$out/wdev.ko" "$root/lib/modules/$release/extra/"
    depmod -b "$root" "$release" 2>>"$log"
    for file in regulatory.db regulatory.db.p7s; do
        cp "$tools/lib/firmware/$file-debian" "$root/lib/firmware/$file"
    done
}

build_initramfs() {
    newer "$out/initramfs" image build.sh programs ../device/root/etc ../examples "$out/wdev.ko" \
        "$build/liborlovendor.so" "$build/orloctl" "$build/uci" || return 0
    build_root
    (cd "$out/root" && find . | cpio -o -H newc -R 0:0 --quiet) >"$out/initramfs.new"
    mv "$out/initramfs.new" "$out/initramfs"
    rm -rf "$out/root"
}

[ "$(uname -m)" = x86_64 ] || cannot 'the machine needs an x86-64 processor around it'
mkdir -p "$out/stamps"
: >"$log"
once chosen choose_kernel
release=$(cat "$out/kernel-release")
kernel=$out/kernel
once kernel fetch_kernel
once uncompressed uncompress_kernel
once modules choose_modules
once tools fetch_tools
once certificates make_certificates
build_driver
build_initramfs
