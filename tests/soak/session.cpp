// SPDX-License-Identifier: MIT
#include "soak/session.h"

#include "faults/cases.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace orlo::test {

namespace {

const std::vector<std::string> channels_of_radio[2] = {
    {"1", "5", "6", "9", "11", "13"},
    {"36", "40", "44", "48", "52", "149", "153", "157", "161"},
};

struct Level {
    int percent;
    const char* name;
};

const Level levels[] = {
    {100, "Max"}, {90, "90"}, {80, "80"},  {75, "High"}, {70, "70"}, {60, "60"}, {50, "Middle"},
    {40, "40"},   {30, "30"}, {25, "Low"}, {20, "20"},   {10, "10"}, {5, "5"},   {1, "Min"},
};

const Level& level_at(int percent) {
    return *std::find_if(std::begin(levels), std::end(levels),
                         [&](const Level& level) { return percent >= level.percent; });
}

struct Width {
    const char* megahertz;
    const char* option;
};

const Width widths[] = {{"20", "HT20"}, {"40", "HT40+"}, {"80", "HT80"}};

std::string bit(bool set) {
    return set ? "1" : "0";
}

std::string word(bool set) {
    return set ? "true" : "false";
}

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

bool holds(const std::string& list, int channel) {
    std::istringstream words(list);
    for (std::string entry; words >> entry;) {
        if (entry == std::to_string(channel)) {
            return true;
        }
    }
    return false;
}

std::string with_commas(std::string list) {
    std::replace(list.begin(), list.end(), ' ', ',');
    return list;
}

} // namespace

Session::Session(unsigned seed) : random_(seed) {
    for (const Case& one : all_cases()) {
        fixed_words_[one.operation] = one.words;
    }
    for (int radio = 0; radio < 2; radio++) {
        const std::string section = "wireless.wifi" + std::to_string(radio);
        expected_.stage(section + ".disabled", "0");
        expected_.stage(section + ".channel", radio == 0 ? "6" : "auto");
        expected_.stage(section + ".htmode", radio == 0 ? "HT20" : "HT80");
        expected_.stage(section + ".txpower", "Max");
        expected_.stage(section + "vap0.ssid", radio == 0 ? "Lobby 2.4 GHz" : "Lobby 5 GHz");
    }
    expected_.stage("orloagent.agent.confighash", "0");
    expected_.stage("orloagent.agent.profilehash", "0");
    expected_.stage("orloagent.agent.ap_detection_configured", "0");
    expected_.stage("system.country.countrycode", "US");
    expected_.commit();
    add_radio_calls();
    add_vap_calls();
    add_system_calls();
    add_questions();
    add_radio_questions();
}

std::vector<std::string> Session::round() {
    std::vector<std::string> operations;
    for (const auto& [operation, words] : fixed_words_) {
        operations.push_back(operation);
    }
    operations.insert(operations.end(), 8, "api_save_config");
    for (size_t i = operations.size() - 1; i > 0; i--) {
        std::swap(operations[i], operations[static_cast<size_t>(number(0, static_cast<int>(i)))]);
    }
    return operations;
}

Session::Words Session::call(const std::string& operation) {
    answer_.clear();
    const auto modelled = calls_.find(operation);
    return modelled == calls_.end() ? fixed_words_.at(operation) : modelled->second();
}

int Session::number(int from, int to) {
    return from + static_cast<int>(random_() % static_cast<unsigned>(to - from + 1));
}

std::string Session::one_of(const std::vector<std::string>& choices) {
    return choices[static_cast<size_t>(number(0, static_cast<int>(choices.size()) - 1))];
}

std::string Session::radio_option(const std::string& option) const {
    return "wireless.wifi" + std::to_string(radio_) + "." + option;
}

std::string Session::vap_option(int vap, const std::string& option) const {
    return "wireless.wifi" + std::to_string(radio_) + "vap" + std::to_string(vap) + "." + option;
}

std::string Session::some_hash() {
    std::string hash;
    for (int i = 0; i < 32; i++) {
        hash += "0123456789abcdef"[number(0, 15)];
    }
    return hash;
}

void Session::run_on_channel(int channel) {
    operating_channel_[radio_] = channel;
    expected_.stage(radio_option("channel"), channel);
    expected_.commit("wireless.");
}

// A radio leaves a channel that it may no longer use.
void Session::allow_channels(const std::string& list) {
    expected_.stage(radio_option("eg_ch"), list);
    if (!holds(list, operating_channel_[radio_])) {
        run_on_channel(atoi(list.c_str()));
    }
}

Session::Words Session::radio_settings() {
    radio_ = number(0, 1);
    std::string record = R"({"interface_name": "wlan)" + std::to_string(radio_) + "\"";
    const int threshold = number(0, 2347);
    const int stations = number(1, 320);
    record += ", \"rts_threshold\": " + std::to_string(threshold);
    record += ", \"max_stations\": " + std::to_string(stations);
    expected_.stage(radio_option("rts_threshold"), threshold);
    expected_.stage(radio_option("max_client"), stations);
    const struct {
        const char* member;
        std::string option;
    } flags[] = {
        {"station_isolation", radio_option("ap_isolation_enabled")},
        {"atf", radio_option("atf_status")},
        {"ofdma", radio_option("ofdma")},
        {"mumimo", radio_option("mumimo")},
        {"apsd", "wifi_qos.wifi" + std::to_string(radio_) + ".APSD"},
        {"wmm", "wifi_qos.wifi" + std::to_string(radio_) + ".WMM"},
    };
    for (const auto& entry : flags) {
        if (number(0, 2) > 0) { // else not given: it stays as it was
            const bool on = flag();
            record += ", " + quoted(entry.member) + ": " + word(on);
            expected_.stage(entry.option, bit(on));
        }
    }
    return {record + "}"};
}

Session::Words Session::hardware() {
    const std::string radio = radio_number();
    const bool modern = flag();
    const std::string mode =
        radio_ == 0 ? (modern ? "bg-n-ax" : "bg") : (modern ? "a-n-ac-ax" : "a");
    const Width& width = widths[number(0, radio_ == 0 ? 0 : 2)];
    const std::string list =
        one_of({channels_of_radio[radio_][0] + " " + channels_of_radio[radio_][2],
                channels_of_radio[radio_][1] + " " + channels_of_radio[radio_][3]});
    expected_.stage(radio_option("hwmode"),
                    radio_ == 0 ? (modern ? "11axg" : "11bg") : (modern ? "11axa" : "11a"));
    allow_channels(list);
    expected_.stage(radio_option("htmode"), width.option);
    expected_.stage(radio_option("legacy_rates"), "6 9 12");
    return {radio, R"({"mode": ")" + mode + R"(", "eligible_channels": [)" + with_commas(list) +
                       R"(], "channel_bandwidth": )" + width.megahertz +
                       R"(, "supported_rate": [6, 9, 12]})"};
}

Session::Words Session::profile() {
    const std::string radio = radio_number();
    const bool forced = number(0, 3) == 0;
    const std::string channel = one_of(channels_of_radio[radio_]);
    const std::string second = radio_ == 1 && flag() ? "149" : "-1";
    const int percent = number(1, 100);
    expected_.stage("orloagent.wifi" + radio + ".forceDisable", forced ? "on" : "off");
    if (forced) {
        expected_.stage(radio_option("disabled"), "1");
    }
    expected_.stage(radio_option("secondchannel"), second == "-1" ? "" : second);
    expected_.stage(radio_option("txpower"), level_at(percent).name);
    run_on_channel(atoi(channel.c_str()));
    return {radio, forced ? "force-disable" : "not-override", channel, second,
            std::to_string(percent)};
}

Session::Words Session::save() {
    expected_.commit();
    for (radio_ = 0; radio_ < 2; radio_++) {
        if (expected_.value(radio_option("channel")) == "auto") {
            run_on_channel(operating_channel_[radio_]);
        }
    }
    answer_ = "0";
    return {};
}

void Session::add_radio_calls() {
    calls_["api_apply_radio_status"] = [&]() -> Words {
        const std::string radio = radio_number();
        const bool on = number(0, 3) > 0;
        expected_.stage(radio_option("disabled"), bit(!on));
        answer_ = "0";
        return {radio, bit(on)};
    };
    calls_["api_set_Channel"] = [&]() -> Words {
        const std::string radio = radio_number();
        const std::string channel = one_of(channels_of_radio[radio_]);
        run_on_channel(atoi(channel.c_str()));
        answer_ = "0";
        return {radio, channel};
    };
    calls_["api_set_secondChannel"] = [&]() -> Words {
        radio_ = 1;
        const std::string second = one_of({"-1", "36", "149"});
        expected_.stage(radio_option("secondchannel"), second == "-1" ? "" : second);
        expected_.commit("wireless.");
        answer_ = "0";
        return {"1", second};
    };
    calls_["api_set_Power"] = [&]() -> Words {
        const std::string radio = radio_number();
        const int percent = number(1, 100);
        expected_.stage(radio_option("txpower"), level_at(percent).name);
        expected_.commit("wireless.");
        answer_ = "0";
        return {radio, std::to_string(percent)};
    };
    const auto done = [&](Words (Session::*words)()) {
        return [this, words]() {
            answer_ = "0";
            return (this->*words)();
        };
    };
    calls_["api_apply_radio"] = done(&Session::radio_settings);
    calls_["api_apply_hw_specific"] = done(&Session::hardware);
    calls_["api_apply_wireless_interface"] = done(&Session::profile);
    calls_["api_save_config"] = [&] { return save(); };
    calls_["api_apply_mesh_link_radio"] = [&]() -> Words {
        radio_ = 1;
        const Width& width = widths[number(0, 2)];
        const std::string list = one_of({"36 40 44 48", "149 153"});
        allow_channels(list);
        expected_.stage(radio_option("htmode"), width.option);
        answer_ = "0";
        return {"1", width.megahertz, list};
    };
    calls_["api_set_ap_detection"] = [&]() -> Words {
        const std::string radio = radio_number();
        const bool on = flag();
        expected_.stage(radio_option("rfscan_status"), bit(on));
        expected_.commit();
        answer_ = "0";
        return {radio, on ? "on" : "off"};
    };
}

void Session::add_radio_questions() {
    calls_["api_get_radio_status"] = [&]() -> Words {
        const std::string radio = radio_number();
        answer_ = expected_.value(radio_option("disabled")) == "0" ? "\"up\"" : "\"down\"";
        return {radio};
    };
    calls_["api_get_channel"] = [&]() -> Words {
        const std::string radio = radio_number();
        answer_ = std::to_string(operating_channel_[radio_]);
        return {radio};
    };
    calls_["api_get_bandwidth"] = [&]() -> Words {
        const std::string radio = radio_number();
        const std::string option = expected_.value(radio_option("htmode"));
        for (const Width& width : widths) {
            answer_ = option == width.option ? width.megahertz : answer_;
        }
        return {radio};
    };
    calls_["api_get_transmitpower"] = [&]() -> Words {
        const std::string radio = radio_number();
        const std::string name = expected_.value(radio_option("txpower"));
        for (const Level& level : levels) {
            answer_ = name == level.name ? std::to_string(level.percent) : answer_;
        }
        return {radio};
    };
    calls_["api_get_vap_ssid"] = [&]() -> Words {
        const std::string radio = radio_number();
        const std::string ssid = expected_.value(vap_option(0, "ssid"));
        answer_ = ssid.empty() ? "" : quoted(ssid);
        return {radio, "0"};
    };
}

} // namespace orlo::test
