// SPDX-License-Identifier: MIT
#include "radio/vlan_script.h"

#include "common/command.h"
#include "common/file.h"
#include "common/log.h"
#include "common/text.h"

namespace orlo {

void api_update_vap_vlan() {
    constexpr const char* script = "/usr/lib/lua/luci/chvlan.lua";
    LOG_TRACE("Entering...\n");
    if (!exists(script)) {
        LOG_TRACE("VLAN change script was not found\n");
        return;
    }
    run_logged(__func__, Text<128>("%s %s", "/usr/bin/lua", script));
}

} // namespace orlo
