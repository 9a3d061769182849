#!/bin/sh
# SPDX-License-Identifier: MIT
# A changed passphrase throws out the stations that have the old one only.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"
with_office

check 'a station joins' joins 1 2437 Office "$(psk "$office_key")"
sed 's/correct horse battery staple/a donkey will do as well/' "$examples/office.json" >/tmp/changed.json
push /tmp/changed.json changed-office

check 'it has lost its network' eventually 10 is_told 1 CTRL-EVENT-DISCONNECTED
check 'and the old key is wrong now' eventually 30 is_told 1 WRONG_KEY
check 'the new key is right' joins 2 2437 Office "$(psk 'a donkey will do as well')"
check 'with WPA3 as well' joins 3 5180 Office "$(sae 'a donkey will do as well')"
check 'other networks keep their keys' joins 4 5180 'Office Lab' "$(sae "$lab_key")"
check 'the old key is still refused' not has_joined 1
all_leave
