// SPDX-License-Identifier: MIT
// The session's calls that decide about the system, and its questions.
#include "soak/session.h"

#include <utility>

namespace orlo::test {

namespace {

std::string bit(bool set) {
    return set ? "1" : "0";
}

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

} // namespace

void Session::add_system_calls() {
    // Operations that stage one text as it is.
    const struct {
        const char* operation;
        const char* option;
        std::vector<std::string> texts;
    } plain[] = {
        {"api_apply_country_code", "system.country.countrycode", {"AT", "DE", "US", "JP"}},
        {"api_apply_cp_virt_ip", "network.lan.cp_virt_ip", {"198.51.100.1", ""}},
        {"api_set_ap_detection_configured", "orloagent.agent.ap_detection_configured", {"0", "1"}},
        {"api_apply_openflow_enable", "openflow.config.enable", {"0", "1"}},
    };
    for (const auto& entry : plain) {
        calls_[entry.operation] = [this, entry]() -> Words {
            const std::string text = one_of(entry.texts);
            expected_.stage(entry.option, text);
            answer_ = "0";
            return {text};
        };
    }
    for (const auto& [operation, option] :
         {std::pair("api_config_set_hash", "orloagent.agent.confighash"),
          std::pair("api_profile_set_hash", "orloagent.agent.profilehash")}) {
        calls_[operation] = [this, option = option]() -> Words {
            const std::string hash = some_hash();
            expected_.stage(option, hash);
            answer_ = "0";
            return {hash};
        };
    }
    for (const auto& [operation, option] :
         {std::pair("api_apply_led_status", "system.eco_mode.eco_mode"),
          std::pair("api_apply_reset_button", "system.reset_button.disable")}) {
        calls_[operation] = [this, option = option]() -> Words {
            const bool on = flag();
            expected_.stage(option, bit(!on));
            answer_ = "0";
            return {bit(on)};
        };
    }
    calls_["api_apply_syslog"] = [&]() -> Words {
        const bool on = flag();
        const int port = number(0, 65536);
        const int severity = number(0, 8);
        const bool has_server = port >= 1 && port <= 65535;
        const std::string section = "system.@system[0].";
        expected_.stage(section + "log_remote", bit(on));
        expected_.stage(section + "log_ip", has_server ? "192.0.2.9" : "");
        expected_.stage(section + "log_port", has_server ? std::to_string(port) : "514");
        if (severity <= 7) {
            expected_.stage(section + "severity", severity);
        }
        answer_ = "0";
        return {bit(on), "192.0.2.9", std::to_string(port), std::to_string(severity), "local0"};
    };
    add_openflow_calls();
    add_time_calls();
}

void Session::add_openflow_calls() {
    calls_["api_apply_openflow_controller"] = [&]() -> Words {
        const std::string index = std::to_string(number(0, 3));
        const std::string controller = one_of({"tcp:192.0.2.7:6633", "tcp:192.0.2.8:6633"});
        expected_.stage("openflow.config.controller" + index, controller);
        answer_ = "0";
        return {index, controller};
    };
    calls_["api_apply_openflow_critical_mode"] = [&]() -> Words {
        const std::string mode = one_of({"normal", "drop", "secure"});
        const std::string timeout = std::to_string(number(1, 300));
        expected_.stage("openflow.config.fail_mode", mode == "normal" ? "open"
                                                     : mode == "drop" ? "close"
                                                                      : "secure");
        if (mode != "secure") {
            expected_.stage("openflow.config.fail_timeout", timeout);
        }
        answer_ = "0";
        return {mode, timeout};
    };
}

void Session::add_time_calls() {
    calls_["api_apply_systime_ntp"] = [&]() -> Words {
        const std::string server = one_of({"192.0.2.1", "time.example.net"});
        const int interval = number(0, 7200);
        expected_.stage("system.systime.time_status", "1");
        expected_.stage("system.systime.ntpserver", server);
        if (interval > 0) {
            expected_.stage("system.systime.interval", interval);
        }
        answer_ = "0";
        return {server, std::to_string(interval)};
    };
    calls_["api_apply_systime_manual"] = [&]() -> Words {
        const Words date = {std::to_string(number(2020, 2037)), std::to_string(number(1, 12)),
                            std::to_string(number(1, 28)), std::to_string(number(0, 23)),
                            std::to_string(number(0, 59))};
        const char* const options[] = {"year", "month", "day", "hour", "min"};
        for (size_t i = 0; i < date.size(); i++) {
            expected_.stage("system.systime." + std::string(options[i]), date[i]);
        }
        expected_.stage("system.systime.time_status", "0");
        answer_ = "0";
        return {"0", date[0], date[1], date[2], date[3], date[4]};
    };
    calls_["api_apply_timezone"] = [&]() -> Words {
        const std::string zone = one_of({"Europe/Vienna", "UTC"});
        expected_.stage("system.systime.zonename", zone);
        expected_.stage("system.systime.dst_enable", "0");
        answer_ = "0";
        return {zone};
    };
    calls_["api_apply_daylight_saving"] = [&]() -> Words {
        expected_.stage("system.systime.dst_enable", "1");
        expected_.stage("system.systime.dst_start", "3,5,0,2,0");
        expected_.stage("system.systime.dst_end", "10,5,0,3,0");
        answer_ = "0";
        return fixed_words_.at("api_apply_daylight_saving");
    };
}

void Session::add_questions() {
    calls_["api_set_orloagent_state"] = [&]() -> Words {
        state_ = number(-1000, 1000);
        answer_ = "0";
        return {std::to_string(state_)};
    };
    calls_["api_get_orloagent_state"] = [&]() -> Words {
        answer_ = std::to_string(state_);
        return {};
    };
    calls_["api_set_profile_id"] = [&]() -> Words {
        profile_id_ = number(0, 1000);
        answer_ = "0";
        return {std::to_string(profile_id_)};
    };
    calls_["api_get_profile_id"] = [&]() -> Words {
        answer_ = std::to_string(profile_id_);
        return {};
    };
    calls_["api_is_config_applying_check"] = [&]() -> Words {
        answer_ = web_blocked_ ? "-1" : "0";
        web_blocked_ = true;
        return {};
    };
    calls_["api_release_web_ui_block"] = [&]() -> Words {
        answer_ = web_blocked_ ? "0" : "-1";
        web_blocked_ = false;
        return {};
    };
    for (const auto& [operation, option] :
         {std::pair("api_config_get_hash", "orloagent.agent.confighash"),
          std::pair("api_profile_get_hash", "orloagent.agent.profilehash")}) {
        calls_[operation] = [this, option = option]() -> Words {
            answer_ = quoted(expected_.value(option));
            return {};
        };
    }
    calls_["api_get_ap_detection_configured"] = [&]() -> Words {
        answer_ = expected_.value("orloagent.agent.ap_detection_configured");
        return {};
    };
    calls_["api_get_system_information"] = [&]() -> Words {
        answer_ = quoted(expected_.value("system.country.countrycode"));
        return {"country"};
    };
}

} // namespace orlo::test
