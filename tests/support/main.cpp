// SPDX-License-Identifier: MIT
// Runs each selected test in a virtual access point of its own, with the library loaded as the
// agent loads it. ctest names one test a run; started by hand for several, the program starts
// itself again for each.
#include "enter/virtual_ap.h"
#include "support/descriptors.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace orlo::test {

// A program into which the library's objects are linked is its own library.
void* vendor_library() {
    static void* const program = dlopen(nullptr, RTLD_NOW);
    static void* const library = dlsym(program, "Vendor_Ops") != nullptr
                                     ? program
                                     : dlopen(ORLO_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        fprintf(stderr, "%s\n", dlerror());
        abort();
    }
    return library;
}

} // namespace orlo::test

namespace {

// Whatever a test is about: what it opens, and what the library opens in it, is closed behind it.
class NothingStaysOpen : public testing::EmptyTestEventListener {
    // Files, folders and pipes. The library keeps the socket of its driver queries, by design.
    static int open_files() { return orlo::test::open_descriptors(orlo::test::Sockets::left_out); }

    void OnTestStart(const testing::TestInfo& /*test*/) override { before_ = open_files(); }
    void OnTestEnd(const testing::TestInfo& /*test*/) override {
        EXPECT_EQ(open_files(), before_) << "files, folders and pipes are open behind the test";
    }

    int before_ = 0;
};

using Names = std::vector<std::string>;

// What the filter selects, as the program itself lists it: "Suite." lines, then "  Test" lines.
Names selected_tests(const std::string& program, const std::string& filter) {
    Names names;
    const std::string command =
        "'" + program + "' --gtest_list_tests '--gtest_filter=" + filter + "'";
    FILE* listing = popen(command.c_str(), "r");
    if (listing == nullptr) {
        return names;
    }
    std::string suite;
    char line[512];
    while (fgets(line, sizeof line, listing) != nullptr) {
        const std::string text(line, std::string(line).find_first_of("#\n"));
        const std::string name = text.substr(text.find_first_not_of(' '));
        const std::string trimmed = name.substr(0, name.find_last_not_of(' ') + 1);
        if (text[0] == ' ') {
            names.push_back(suite + trimmed);
        } else {
            suite = trimmed;
        }
    }
    pclose(listing);
    return names;
}

int run_each(const std::string& program, const Names& names) {
    Names failed;
    for (const std::string& name : names) {
        std::string command = "'" + program;
        command += "' --gtest_brief=1 '--gtest_filter=" + name + "'";
        if (system(command.c_str()) != 0) {
            failed.push_back(name);
        }
    }
    printf("%zu passed, %zu failed\n", names.size() - failed.size(), failed.size());
    for (const std::string& name : failed) {
        printf("failed: %s\n", name.c_str());
    }
    return failed.empty() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const std::string program = argv[0];
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    const std::string filter = testing::GTEST_FLAG(filter);
    if (filter.find_first_of("*?:-") != std::string::npos) {
        return run_each(program, selected_tests(program, filter));
    }
    orlo::test::vendor_library();
    orlo::device::enter({ORLO_DEVICE_ROOT, {ORLO_BUILD_DIR}});
    testing::UnitTest::GetInstance()->listeners().Append(new NothingStaysOpen);
    return RUN_ALL_TESTS();
}
