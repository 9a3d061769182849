// SPDX-License-Identifier: MIT
// SNMP settings that are in order, for tests to spoil or to vary.
#pragma once

#include "system/service.h"

namespace orlo::test {

class SnmpSettings : public SystemService {
protected:
    snmp_trap_host hosts_[3];
    snmp_settings snmp_;

    SnmpSettings(); // v1/v2c, switched on, open to everybody, no trap hosts

    void use_v3();
    void use_host(int i, int status, const char* address);

    int apply(const snmp_settings* snmp);
    int apply() { return apply(&snmp_); }

    // The edits of package snmpd, without what they have in common: "public.community=x".
    Trace edits() const;
};

} // namespace orlo::test
