// SPDX-License-Identifier: MIT
// An access point within a mesh: its mesh VAP, what its commands and debug files answer, and the
// reports that come of it.
#pragma once

#include "support/access_point.h"
#include "support/json_memory.h"

struct json_t;

namespace orlo::test {

class Mesh : public AccessPoint {
protected:
    // A branch of the mesh: VAP 1 of radio 1 carries the links, two access points are connected to
    // it, and it is connected to one.
    Mesh();

    // Makes this one the mesh VAP, instead of the one before.
    void carry_links_on(int radio, int vap);

    // ---- What the device answers; each text is the output, line ends included ----

    static void answer_portal(const std::string& output); // "N": not the root
    static void answer_path(const std::string& output);
    static void answer_mesh_status(const std::string& output);
    static void answer_list_sta(const std::string& output);
    static void answer_all_sta(const std::string& output);
    static void answer_assoclist(const std::string& output);
    static void answer_net_dev(const std::string& output);

    // One station as hostapd and the driver list it.
    static std::string station(const std::string& mac, const std::string& received,
                               const std::string& sent);
    static std::string association(const std::string& mac, const std::string& receive_rate,
                                   const std::string& transmit_rate);

    // The interface of the mesh station goes up.
    static void start_station(const std::string& interface = "mesh0");

    // ---- Reports as JSON texts, released; "NULL" without one ----

    static std::string text_of(json_t* report);
    std::string status_report();
    std::string statistics_report();

    // What was logged at error level, without the module: "get_ml_path: failed to ...".
    Trace errors() const;

private:
    JsonMemory json_memory_;
    std::string mesh_vap_;
};

} // namespace orlo::test
