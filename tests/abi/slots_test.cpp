// SPDX-License-Identifier: MIT
// The table as it lies in the built library.
#include "library.h"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

using orlo_abi::library;
using orlo_abi::table;

struct Slot {
    std::string name;
    void* operation;
};

// The slots by position, as an agent reads them that takes the table for an array of pointers.
std::vector<Slot> slots() {
    static const char* const names[] = {
#define ORLO_SLOT(slot, name, ...) #name,
#include "slots.def"
    };
    std::vector<Slot> slots;
    for (const char* name : names) {
        void* operation = nullptr;
        const auto* place =
            reinterpret_cast<const char*>(&table()) + slots.size() * sizeof(operation);
        memcpy(&operation, place, sizeof(operation));
        slots.push_back({name, operation});
    }
    return slots;
}

// The permissions of the page that an address lies in, "r--p", as the kernel tells them.
std::string permissions_at(const void* address) {
    const auto wanted = reinterpret_cast<uintptr_t>(address);
    std::ifstream maps("/proc/self/maps");
    std::string line;
    while (std::getline(maps, line)) {
        std::istringstream words(line);
        uintptr_t from = 0;
        uintptr_t to = 0;
        char dash = 0;
        std::string permissions;
        words >> std::hex >> from >> dash >> to >> permissions;
        if (from <= wanted && wanted < to) {
            return permissions;
        }
    }
    return "not mapped";
}

TEST(Table, has_132_slots_in_the_built_library) {
    ASSERT_EQ(slots().size(), 132U);
    EXPECT_EQ(orlo_abi::exported_symbols()["Vendor_Ops"], 132 * sizeof(void (*)()));
}

TEST(Table, leads_from_every_slot_to_a_function_of_the_library) {
    Dl_info own = {};
    ASSERT_NE(dladdr(&table(), &own), 0);
    for (const Slot& slot : slots()) {
        Dl_info found = {};
        ASSERT_NE(slot.operation, nullptr) << slot.name;
        ASSERT_NE(dladdr(slot.operation, &found), 0) << slot.name;
        EXPECT_EQ(found.dli_fbase, own.dli_fbase) << slot.name;
        EXPECT_EQ(permissions_at(slot.operation), "r-xp") << slot.name;
    }
}

// The reserved ones included, and no stub that stands in for several.
TEST(Table, holds_a_function_of_its_own_in_each_slot) {
    std::set<void*> functions;
    for (const Slot& slot : slots()) {
        functions.insert(slot.operation);
    }
    EXPECT_EQ(functions.size(), 132U);
}

TEST(Table, cannot_be_written_once_loaded) {
    EXPECT_EQ(permissions_at(&table()), "r--p");
    EXPECT_EQ(permissions_at(reinterpret_cast<const char*>(&table() + 1) - 1), "r--p");
}

TEST(Table, holds_the_same_functions_that_are_exported_by_name) {
    int exported = 0;
    for (const Slot& slot : slots()) {
        void* const by_name = dlsym(library(), slot.name.c_str());
        if (by_name != nullptr) {
            EXPECT_EQ(by_name, slot.operation) << slot.name;
            exported++;
        }
    }
    EXPECT_GE(exported, 1); // api_show_mem_usage at least
}

} // namespace
