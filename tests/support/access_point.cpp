// SPDX-License-Identifier: MIT
#include "support/access_point.h"

#include "support/option_text.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <uci.h>
#include <unistd.h>

namespace orlo::test {

namespace {

const vendor_ops& operations() {
    static const auto* const table =
        static_cast<const vendor_ops*>(dlsym(vendor_library(), "Vendor_Ops"));
    return *table;
}

struct Store {
    Store() : context(uci_alloc_context()) {}
    ~Store() { uci_free_context(context); }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    uci_context* context;
};

// While it lives, the store finds no staged changes: what is read is what the files hold.
struct WithoutStaged {
    WithoutStaged() { rename("/tmp/.uci", "/tmp/.uci-away"); }
    ~WithoutStaged() { rename("/tmp/.uci-away", "/tmp/.uci"); }
    WithoutStaged(const WithoutStaged&) = delete;
    WithoutStaged& operator=(const WithoutStaged&) = delete;
};

std::string value_of(std::string option) {
    const Store store;
    uci_ptr found;
    if (uci_lookup_ptr(store.context, &found, option.data(), true) != UCI_OK ||
        (found.flags & uci_ptr::UCI_LOOKUP_COMPLETE) == 0) {
        return "(none)";
    }
    return found.o == nullptr ? found.s->type : text_of(*found.o);
}

std::string line_of(const std::string& package, const uci_delta& change) {
    const std::string option = change.e.name == nullptr ? "" : std::string(".") + change.e.name;
    const std::string path = package + "." + change.section + option;
    const std::string value = change.value == nullptr ? "" : change.value;
    switch (change.cmd) {
    case UCI_CMD_REMOVE:
        return "-" + path;
    case UCI_CMD_LIST_ADD:
        return path + "+=" + value;
    case UCI_CMD_LIST_DEL:
        return path + "-=" + value;
    default:
        return path + "=" + value;
    }
}

} // namespace

AccessPoint::AccessPoint() : ops(operations()), door(Door::instance()) {
    door.open();
}

void AccessPoint::configure(const std::string& option, const std::string& value) {
    const Store store;
    std::string text = option + "=" + value;
    uci_ptr found;
    ASSERT_EQ(uci_lookup_ptr(store.context, &found, text.data(), true), UCI_OK) << option;
    ASSERT_EQ(uci_set(store.context, &found), UCI_OK) << option;
    ASSERT_EQ(uci_commit(store.context, &found.p, false), UCI_OK) << option;
}

std::string AccessPoint::staged_value(const std::string& option) {
    return value_of(option);
}

std::string AccessPoint::committed_value(const std::string& option) {
    const WithoutStaged without_staged;
    return value_of(option);
}

std::vector<std::string> AccessPoint::staged() {
    const Store store;
    std::vector<std::string> lines;
    char** names = nullptr;
    if (uci_list_configs(store.context, &names) != UCI_OK) {
        return lines;
    }
    for (char** name = names; *name != nullptr; name++) {
        uci_ptr found;
        std::string text = *name;
        if (uci_lookup_ptr(store.context, &found, text.data(), true) != UCI_OK) {
            continue;
        }
        uci_element* element = nullptr;
        uci_foreach_element(&found.p->saved_delta, element) {
            lines.push_back(line_of(*name, *uci_to_delta(element)));
        }
    }
    free(names);
    return lines;
}

bool AccessPoint::saving_restarts_network() {
    door.forget();
    EXPECT_EQ(ops.api_save_config(), 0);
    const Trace commands = door.trace({"run"});
    return std::count(commands.begin(), commands.end(),
                      "run /usr/bin/orloagent_apply_settings.sh network-5 &") == 1;
}

void AccessPoint::write_file(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::trunc);
    file << text;
    ASSERT_TRUE(file.good()) << path;
}

std::string AccessPoint::read_file(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

bool AccessPoint::exists(const std::string& path) {
    return access(path.c_str(), F_OK) == 0;
}

std::vector<std::string> AccessPoint::journal() {
    std::istringstream text(read_file("/var/log/journal"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

void AccessPoint::replace_tool(const std::string& name, const std::string& shell_script) {
    const std::string folder = "/var/run/device/replaced/";
    mkdir(folder.c_str(), 0755);
    write_file(folder + name, "#!/bin/sh\n" + shell_script + "\n");
    ASSERT_EQ(chmod((folder + name).c_str(), 0755), 0);
}

void AccessPoint::operate_on(int radio, int channel) {
    write_file("/var/run/device/radio" + std::to_string(radio) + "/channel",
               std::to_string(channel) + "\n");
}

void AccessPoint::tell_driver(const std::string& interface, const std::string& lines) {
    write_file("/var/run/device/driver/" + interface, lines);
}

int AccessPoint::next_descriptor() {
    const int next = dup(0);
    close(next);
    return next;
}

std::string AccessPoint::stderr_of(const std::function<void()>& call) {
    testing::internal::CaptureStderr();
    call();
    return testing::internal::GetCapturedStderr();
}

} // namespace orlo::test
