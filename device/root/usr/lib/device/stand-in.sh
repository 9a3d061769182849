# What the stand-ins of the device's tools share; they source this file first.
# shellcheck shell=sh

# State that tools set and read back, see device/README.md.
state=/var/run/device
# The one place where every call is recorded.
journal=/var/log/journal

# replace TEXT FROM TO: sets $replaced to TEXT with every FROM exchanged.
replace() {
    replaced=
    rest=$1
    while :; do
        case $rest in
        *"$2"*)
            replaced=$replaced${rest%%"$2"*}$3
            rest=${rest#*"$2"}
            ;;
        *) break ;;
        esac
    done
    replaced=$replaced$rest
}

newline='
'
backslash=\\

# quote WORD: sets $quoted to the word as a shell reads it back, in one line.
quote() {
    case $1 in
    *"$newline"*)
        replace "$1" "$backslash" "$backslash$backslash"
        replace "$replaced" "'" "\\'"
        replace "$replaced" "$newline" '\n'
        quoted="\$'$replaced'"
        ;;
    '' | *[!A-Za-z0-9_@%+=:,./-]*)
        replace "$1" "'" "'\\''"
        quoted="'$replaced'"
        ;;
    *) quoted=$1 ;;
    esac
}

# record WORD...: appends this call to the journal. One printf is one write, so that calls made at
# the same time do not mix. Where a test has put another program in the tool's place, that one goes
# on with the call.
record() {
    line=${0##*/}
    for word; do
        quote "$word"
        line="$line $quoted"
    done
    printf '%s\n' "$line" >>"$journal"
    if [ -x "$state/replaced/${0##*/}" ]; then
        exec "$state/replaced/${0##*/}" "$@"
    fi
}

refuse() {
    printf '%s: %s\n' "${0##*/}" "$1" >&2
    exit 1
}

# radio_of INTERFACE: sets $radio to the number in wdevR or wdevRapV.
radio_of() {
    case $1 in
    wdev[01] | wdev[01]ap[0-9] | wdev[01]ap1[0-5])
        radio=${1#wdev}
        radio=${radio%%ap*}
        ;;
    *) refuse "$1: no such device" ;;
    esac
}

# driver_name INTERFACE: sets $driver_name to the interface at the driver. hostapd and iwinfo also know
# the first eight VAPs of a radio by an older name: ath0, ath01 ... for wdev0ap0, wdev0ap1 ...
driver_name() {
    case $1 in
    ath[01]) driver_name=wdev${1#ath}ap0 ;;
    ath[01][1-7])
        driver_name=${1#ath}
        driver_name=wdev${driver_name%?}ap${driver_name#?}
        ;;
    *) driver_name=$1 ;;
    esac
}

# show_stations INTERFACE FORMAT: prints the stations of an interface by an awk program in which
# word["rx-bytes"] and its like are what the station's line in stations/ says.
show_stations() {
    [ -e "$state/stations/$1" ] || return 0
    awk '{
            split("", word)
            for (i = 2; i <= NF; i++) {
                split($i, pair, "=")
                word[pair[1]] = pair[2]
            }
        }
        '"$2" "$state/stations/$1"
}

# set_interfaces NAME STATE...: changes the states (up or down) of interfaces, all at one moment.
set_interfaces() {
    changes=" $* "
    while read -r name old rest; do
        case $changes in
        *" $name up "*) old=up ;;
        *" $name down "*) old=down ;;
        esac
        printf '%s\n' "$name $old $rest"
    done <"$state/interfaces" >"$state/interfaces.$$"
    mv "$state/interfaces.$$" "$state/interfaces"
}
