// SPDX-License-Identifier: MIT
// What the built library shows to others, and what it asks of them.
#include "library.h"

#include <fstream>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

// The names in exported-symbols.txt: one a line, "#" begins a comment.
std::set<std::string> expected_symbols() {
    std::set<std::string> names;
    std::ifstream file(ORLO_EXPORTED_SYMBOLS);
    std::string line;
    while (std::getline(file, line)) {
        const std::string name = line.substr(0, line.find_first_of("# "));
        if (!name.empty()) {
            names.insert(name);
        }
    }
    return names;
}

std::set<std::string> exported_names() {
    std::set<std::string> names;
    for (const auto& [name, size] : orlo_abi::exported_symbols()) {
#ifdef ORLO_SANITIZED
        if (name.find("__") == 0) { // the sanitizer's own
            continue;
        }
#endif
        names.insert(name);
    }
    return names;
}

TEST(Library, exports_exactly_the_agreed_names) {
    EXPECT_THAT(exported_names(), testing::ContainerEq(expected_symbols()));
}

TEST(Library, needs_the_access_points_own_libraries_only) {
#ifdef ORLO_SANITIZED
    GTEST_SKIP() << "a sanitizer brings its own libraries";
#endif
    const std::set<std::string> needed = orlo_abi::needed_libraries();
    EXPECT_THAT(needed, testing::IsSupersetOf({"libuci", "libdebug", "libc"}));
    // ARM finds there what guards its stacks.
    EXPECT_THAT(needed, testing::IsSubsetOf({"libuci", "libdebug", "libc", "libjansson",
                                             "libglib-2.0", "ld-linux-aarch64", "ld-linux-armhf"}));
}

} // namespace
