# The words that scenarios are written in. They reach the access point and its stations by these
# alone, so that the same scenarios run against any access point, see rig/README.md.
# shellcheck shell=sh disable=SC2034 # they are for who sources this

# How a command line is run on the access point: within the machine by its shell.
: "${ORLO_AP:=sh -c}"
stations=/tmp/stations
examples=/usr/share/examples
[ -d "$examples" ] || examples=$(dirname "$0")/../../examples

ap() { # COMMAND-LINE
    # shellcheck disable=SC2086 # a program and its words
    $ORLO_AP "$1"
}

fail() {
    printf 'FAILED: %s\n' "$1"
    exit 1
}

# check SENTENCE COMMAND...: the scenario fails unless the command succeeds.
check() {
    sentence=$1
    shift
    if "$@"; then
        printf 'ok: %s\n' "$sentence"
    else
        fail "$sentence"
    fi
}

# eventually SECONDS COMMAND...: tries the command until it succeeds.
eventually() {
    tries=$(($1 * 2))
    shift
    until "$@"; do
        tries=$((tries - 1))
        [ "$tries" -gt 0 ] || return 1
        sleep 0.5
    done
}

not() {
    ! "$@"
}

# equals HAVE WANT: shows both where they differ.
equals() {
    [ "$1" = "$2" ] || {
        printf 'have: %s\nwant: %s\n' "$1" "$2"
        return 1
    }
}

# ---- The access point

# push FILE NAME: applies a description through the library and saves it. The name tells the next
# scenario what the access point runs.
push() {
    ap 'rm -f /tmp/pushed; orloctl apply - >/tmp/apply.log 2>&1' <"$1" || {
        ap 'cat /tmp/apply.log'
        fail "$1 is applied"
    }
    ap "echo $2 >/tmp/pushed"
}

# The office as its description has it, where it is not what runs.
with_office() {
    [ "$(ap 'cat /tmp/pushed 2>/dev/null')" = office ] || push "$examples/office.json" office
}

# Whoever changes the office otherwise says so.
office_is_changed() {
    ap 'rm -f /tmp/pushed'
}

call() { # OPERATION ARGUMENT...
    ap "orloctl call $* >/dev/null"
}

save() {
    call api_save_config
}

# Whether the interface is up, as the access point's own tools tell.
is_up() { # INTERFACE
    ap "ifconfig | grep -q '^$1 '"
}

# ---- Stations

in_station() { # NUMBER COMMAND...
    space=station$1
    shift
    nsenter "--net=/run/netns/$space" "$@"
}

interface_of() { # NUMBER
    cat "$stations/$1.interface"
}

address_of() { # NUMBER
    cat "$stations/$1.address"
}

# start_joining NUMBER FREQUENCY SSID LINE...: the lines are wpa_supplicant's of the network.
start_joining() {
    number=$1
    leave "$number"
    {
        printf 'ctrl_interface=%s/%s\nnetwork={\nssid="%s"\nscan_ssid=1\nscan_freq=%s\nfreq_list=%s\n' \
            "$stations" "$number.control" "$3" "$2" "$2"
        shift 3
        printf '%s\n' "$@"
        echo '}'
    } >"$stations/$number.conf"
    in_station "$number" wpa_supplicant -B -t -i "$(interface_of "$number")" \
        -c "$stations/$number.conf" -P "$stations/$number.pid" -f "$stations/$number.log"
}

leave() { # NUMBER
    [ -e "$stations/$1.pid" ] || return 0
    read -r pid <"$stations/$1.pid"
    kill "$pid" 2>/dev/null
    eventually 5 not kill -0 "$pid" 2>/dev/null
    rm -f "$stations/$1.pid" "$stations/$1.log"
    in_station "$1" ip address flush dev "$(interface_of "$1")"
}

all_leave() {
    for number in 1 2 3 4; do
        leave "$number"
    done
}

has_joined() { # NUMBER
    awk '/CTRL-EVENT-CONNECTED/ { joined = 1 } /CTRL-EVENT-DISCONNECTED/ { joined = 0 }
        END { exit !joined }' "$stations/$1.log"
}

# joins NUMBER FREQUENCY SSID LINE...: whether the station is let in.
joins() {
    start_joining "$@"
    eventually 15 has_joined "$1"
}

gave_up() { # NUMBER
    grep -qE 'WRONG_KEY|AUTH-REJECT|ASSOC-REJECT|EAP-FAILURE' "$stations/$1.log"
}

# is_refused NUMBER FREQUENCY SSID LINE...: whether the station is not let in.
is_refused() {
    start_joining "$@"
    eventually 10 gave_up "$1"
    ! has_joined "$1"
}

# is_told NUMBER TEXT: whether its log holds the text.
is_told() {
    grep -q "$2" "$stations/$1.log"
}

# takes_address NUMBER VLAN: an address in the VLAN, and what the VLAN's own is.
takes_address() {
    network=10.$(($2 / 256)).$(($2 % 256))
    in_station "$1" ip address add "$network.1$1/24" dev "$(interface_of "$1")"
}

ipv4_of() { # NUMBER VLAN
    echo "10.$(($2 / 256)).$(($2 % 256)).1$1"
}

reaches_vlan() { # NUMBER VLAN
    in_station "$1" ping -c 1 -W 2 "10.$(($2 / 256)).$(($2 % 256)).1" >/dev/null 2>&1
}

# hears NUMBER FREQUENCY: the networks in the air, "BSSID SSID" a line.
hears() {
    in_station "$1" ip link set "$(interface_of "$1")" up
    in_station "$1" iw dev "$(interface_of "$1")" scan freq "$2" passive |
        awk -v wanted="$2" '
            /^BSS / { address = substr($2, 1, 17) }
            /^\tfreq: / { frequency = $2 }
            /^\tSSID:/ && frequency == wanted { sub(/^\tSSID: ?/, ""); print address, $0 }' | sort
}

# What the office's networks ask of a station.
psk() { # KEY
    printf 'key_mgmt=WPA-PSK\npsk="%s"\n' "$1"
}
sae() { # KEY
    printf 'key_mgmt=SAE\nieee80211w=2\nsae_password="%s"\n' "$1"
}
enterprise() { # NAME PASSWORD
    printf 'key_mgmt=WPA-EAP\neap=TTLS\nidentity="%s"\npassword="%s"\nphase2="auth=PAP"\n' "$1" "$2"
}
office_key='correct horse battery staple'
lab_key='only the newest devices'
