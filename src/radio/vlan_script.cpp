#include "radio/vlan_script.h"

#include "common/log.h"
#include "common/text.h"

#include <cstdlib>
#include <unistd.h>

namespace orlo {

void api_update_vap_vlan() {
    constexpr const char* script = "/usr/lib/lua/luci/chvlan.lua";
    LOG_TRACE("Entering...\n");
    if (access(script, F_OK) != 0) {
        LOG_TRACE("VLAN change script was not found\n");
        return;
    }
    const Text<128> command("%s %s", "/usr/bin/lua", script);
    if (system(command) < 0) {
        LOG_TRACE("Execute system call '%s' failed\n", command.c_str());
    }
}

} // namespace orlo
