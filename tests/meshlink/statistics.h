// SPDX-License-Identifier: MIT
// An access point whose mesh links carry traffic: one access point is connected to it, and it is
// connected upward.
#pragma once

#include "meshlink/mesh.h"

namespace orlo::test {

// The address with which the one is connected.
inline const std::string child = "06:11:22:33:44:57";

class MeshStatistics : public Mesh {
protected:
    MeshStatistics();

    // What the links have carried so far.
    static void carry(long long child_received, long long child_sent, long long parent_received,
                      long long parent_sent);

    // A report of both links, and the rates in it.
    static std::string report_of(const std::string& vap_rates, const std::string& sta_rates);
    static std::string rates(const std::string& sent, const std::string& received);

    // One part of a report: "ML VAP" or "ML STA".
    std::string part(const char* name);

    // The question for the speed of the links of an interface, of the station chosen.
    static std::string speed_command(const std::string& interface, const std::string& chosen);

    const std::string child_speed_command = speed_command("ath11", "grep -ie " + child + " -A 2");
    const std::string parent_speed_command = speed_command("mesh0", "head -n 3");
    const std::string station_command = "ifconfig | grep -e '^mesh[0-9]' | cut -d ' ' -f 1";
    const std::string traffic_command = "grep mesh0: /proc/net/dev | awk '{print $2,$10}'";
};

} // namespace orlo::test
