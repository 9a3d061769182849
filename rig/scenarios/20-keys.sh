#!/bin/sh
# SPDX-License-Identifier: MIT
# Stations join each of the office's networks with its key, and with a wrong one do not.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"
with_office

reaches_its_vlan() { # NUMBER VLAN
    takes_address "$1" "$2"
    eventually 5 reaches_vlan "$1" "$2"
}

wep() { # KEY
    printf 'key_mgmt=NONE\nwep_key0="%s"\nwep_tx_keyidx=0\n' "$1"
}

check 'Office Scanners: joined with its WEP key' joins 1 2437 'Office Scanners' "$(wep scanner-40-ap)"
check 'Office Scanners: and VLAN 40 is reached' reaches_its_vlan 1 40
joins 1 2437 'Office Scanners' "$(wep scanner-41-ap)" # WEP lets everybody in, and hears nobody
takes_address 1 40
check 'Office Scanners: not reached with a wrong key' not eventually 3 reaches_vlan 1 40

for frequency in 2437 5180; do
    check "Office at $frequency MHz: joined with WPA3" joins 2 "$frequency" Office "$(sae "$office_key")"
    check "Office at $frequency MHz: and VLAN 20 is reached" reaches_its_vlan 2 20
    check "Office at $frequency MHz: refused with a wrong WPA2 key" \
        is_refused 1 "$frequency" Office "$(psk 'wrong horse battery staple')"
    check "Office at $frequency MHz: and told so" is_told 1 'WRONG_KEY'
    check "Office Guests at $frequency MHz: open" joins 3 "$frequency" 'Office Guests' key_mgmt=NONE
    check "Office Guests at $frequency MHz: and VLAN 30 is reached" reaches_its_vlan 3 30
    check "Office Guests at $frequency MHz: VLAN 20 is not" not reaches_vlan 3 20
done
check "Office: joined with WPA2" joins 1 2437 Office "$(psk "$office_key")"
check "Office: and VLAN 20 is reached" reaches_its_vlan 1 20
check "Office: refused with a wrong WPA3 key" is_refused 2 5180 Office "$(sae 'wrong horse battery staple')"

check 'Office Staff: joined by an account of the RADIUS server' \
    joins 4 5180 'Office Staff' "$(enterprise ada 'countess of lovelace')"
check 'Office Staff: and VLAN 10 is reached' reaches_its_vlan 4 10
check 'Office Staff: refused with a wrong password' \
    is_refused 4 5180 'Office Staff' "$(enterprise ada 'enchantress of numbers')"
check 'Office Staff: and told so' is_told 4 'CTRL-EVENT-EAP-FAILURE'

check 'Office Lab: found though hidden, and joined with WPA3' joins 1 5180 'Office Lab' "$(sae "$lab_key")"
check 'Office Lab: refused with WPA2' is_refused 2 5180 'Office Lab' "$(psk "$lab_key")"
all_leave
