// SPDX-License-Identifier: MIT
// A test's own access point: fresh, with its sample configuration, entered before the test began.
#pragma once

#include "orlo/exports.h"
#include "orlo/vendor_ops.h"
#include "support/door.h"

#include <dlfcn.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace orlo::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

// The library as the agent loads it.
void* vendor_library();

class AccessPoint : public testing::Test {
protected:
    AccessPoint();

    const vendor_ops& ops;
    Door& door;

    // An exported function by its name: exported<decltype(uciSetValue)>("uciSetValue").
    template <class Function>
    static Function* exported(const char* name) {
        return reinterpret_cast<Function*>(dlsym(vendor_library(), name));
    }

    // ---- Configuration: "wireless.wifi0.channel" ----

    // Writes an option for good; "" takes it away.
    static void configure(const std::string& option, const std::string& value);

    // What an option holds, staged changes included, and without them; "(none)" when it is not
    // there. The elements of a list are joined by blanks.
    static std::string staged_value(const std::string& option);
    static std::string committed_value(const std::string& option);

    // Everything staged, package by package: "wireless.wifi0.channel=6", "-wireless.wifi0.eg_ch".
    static std::vector<std::string> staged();

    // Saves; whether that has the network restarted.
    bool saving_restarts_network();

    // ---- Device ----

    static void write_file(const std::string& path, const std::string& text);
    static std::string read_file(const std::string& path); // "" when it is not there
    static bool exists(const std::string& path);

    // The command lines that the device's own tools saw.
    static std::vector<std::string> journal();

    // Replaces what a tool of the device does, after it has written its journal line.
    static void replace_tool(const std::string& name, const std::string& shell_script);

    // The channel that the driver reports for a radio.
    static void operate_on(int radio, int channel);

    // What the driver knows of an interface, in its state file's lines: "fail freq EINVAL".
    static void tell_driver(const std::string& interface, const std::string& lines);

    // The number that the next descriptor gets: another one than before when something was left
    // open.
    static int next_descriptor();

    // What a call writes to standard error.
    static std::string stderr_of(const std::function<void()>& call);
};

} // namespace orlo::test
