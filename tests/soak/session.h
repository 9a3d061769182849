// SPDX-License-Identifier: MIT
// A session of an agent: every operation again and again, in random order, with random but valid
// arguments, saving in between; and what each call must do to the configuration and answer.
//
// Decided by the calls, and so expected: radios (state, channels, power, settings, mode), VAPs
// (state, name, VLAN, open and personal security), quilt, mesh and WDS VAPs, access lists, time,
// syslog, country, LEDs, reset button, OpenFlow, portal address, hashes. Of the other operations
// (SNMP, captive portal, enterprise security...) a fixed call is made, whose effects their own
// tests know.
#pragma once

#include "soak/expected_configuration.h"

#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace orlo::test {

class Session {
public:
    using Words = std::vector<std::string>;

    explicit Session(unsigned seed);

    // The operations of a round: all of them, and some saves.
    std::vector<std::string> round();

    // The words of the next call of an operation. What it stages is expected from then on.
    Words call(const std::string& operation);

    // What it must answer, as JSON; "": nobody can tell.
    std::string answer() const { return answer_; }

    const ExpectedConfiguration& expected() const { return expected_; }

private:
    int number(int from, int to);
    bool flag() { return number(0, 1) == 1; }
    std::string one_of(const std::vector<std::string>& choices);
    std::string radio_number() { return std::to_string(radio_ = number(0, 1)); }
    std::string radio_option(const std::string& option) const;
    std::string vap_option(int vap, const std::string& option) const;
    std::string some_hash();

    void run_on_channel(int channel);
    void allow_channels(const std::string& list);

    void add_radio_calls();
    void add_vap_calls();
    void add_system_calls();
    void add_openflow_calls();
    void add_time_calls();
    void add_questions();
    void add_radio_questions();

    Words radio_settings();
    Words hardware();
    Words profile();
    Words vaps();
    std::string vap_record(int vap);
    void open_vap(int vap);
    void personal_vap(int vap, int version, const std::string& key, const std::string& groups);
    Words quilt();
    Words mesh_vap();
    Words wds();
    Words save();

    std::mt19937 random_;
    ExpectedConfiguration expected_;
    std::map<std::string, std::function<Words()>> calls_;
    std::map<std::string, Words> fixed_words_;
    std::string answer_;
    int radio_ = 0; // that the call is about
    int operating_channel_[2] = {6, 36};
    int state_ = 0;
    int profile_id_ = -1;
    bool web_blocked_ = false;
};

} // namespace orlo::test
