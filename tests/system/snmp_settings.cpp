// SPDX-License-Identifier: MIT
#include "system/snmp_settings.h"

namespace orlo::test {

SnmpSettings::SnmpSettings() : hosts_{}, snmp_{} {
    snmp_.status = 1;
    snmp_.read_only_community = "readers";
    snmp_.port = 161;
    snmp_.radio_status[0] = 1;
    snmp_.radio_status[1] = 1;
}

void SnmpSettings::use_v3() {
    snmp_.version = 1;
    snmp_.username = "operator";
    snmp_.password = "a long password";
}

void SnmpSettings::use_host(int i, int status, const char* address) {
    hosts_[i] = {i, status, address};
    snmp_.trap_hosts[i] = &hosts_[i];
}

int SnmpSettings::apply(const snmp_settings* snmp) {
    door.forget();
    return ops.api_apply_snmp(snmp);
}

Trace SnmpSettings::edits() const {
    Trace lines = door.trace({"set", "delete"});
    for (std::string& line : lines) {
        const std::string prefix = line.find("delete") == 0 ? "delete snmpd." : "set snmpd.";
        line = (prefix[0] == 'd' ? "-" : "") + line.substr(prefix.size());
    }
    return lines;
}

} // namespace orlo::test
