// SPDX-License-Identifier: MIT
// Stations that come and go, and the lists that the library makes of them.
#pragma once

#include "support/access_point.h"

namespace orlo::test {

// An access point that nobody has joined yet.
class Clients : public AccessPoint {
protected:
    Clients();

    static int prepare();

    // The stations of a VAP in the driver's table: lines of the simulated driver.
    static void stations(const std::string& interface, const std::string& lines);

    // As many, 02:00:00:00:00:00 aside.
    static void many_stations(const std::string& interface, int count);

    // Lines of the driver's debug file.
    static void debug_file(const std::string& lines);

    // What the driver knows of a VAP when all is well, and more.
    static void tell_of(const std::string& interface, const std::string& lines);

    static assoc_client_node* list(int radio, int vap);
    static size_t length(int radio, int vap);
    // Its numbers are not aligned: "+record(0, 2).rate" takes a copy that can be compared.
    static const assoc_client_record& record(int radio, int vap, size_t index = 0);

    // "a4:5e:60:01:02:03 ..." of a list, "" of an empty one.
    static std::string macs(int radio, int vap);

    // All lists: "0.2 a4:5e:60:01:02:03".
    static std::vector<std::string> everybody();
};

// "02:00:00:00:01:0a"
std::string mac_of(const uint8_t* mac);

} // namespace orlo::test
