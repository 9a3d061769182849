#!/bin/sh
# SPDX-License-Identifier: MIT
# Known stations are let in, or kept out, where a VAP asks for it.
# shellcheck source=rig/scenarios/lib.sh
. "${0%/*}/lib.sh"
with_office

use_list() { # ACTION STATION MODE NAME
    cat >/tmp/list.json <<END
{
  "radios": [{"radio": 0, "access": [{"vap": 1, "mac_filter_mode": $3}]}],
  "known_clients": {"action": "$1", "mac_list": ["$(address_of "$2")"]}
}
END
    push /tmp/list.json "$4"
}

use_list black 1 1 deny-list
check 'who is on the deny list is refused' is_refused 1 2437 Office "$(psk "$office_key")"
check 'others are let in' joins 2 2437 Office "$(psk "$office_key")"
check 'and a VAP without a filter lets in all' joins 1 5180 Office "$(psk "$office_key")"

use_list white 1 1 allow-list
check 'who is on the allow list is let in' joins 1 2437 Office "$(psk "$office_key")"
check 'others are refused' is_refused 2 2437 Office "$(psk "$office_key")"

use_list white 1 0 office # which does not filter
check 'without the filter they are let in' joins 2 2437 Office "$(psk "$office_key")"
all_leave
