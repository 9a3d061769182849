// SPDX-License-Identifier: MIT
// Enters the virtual access point before any test runs. Listing the tests happens while building
// and needs none.
#include "enter/virtual_ap.h"
#include "ioctl_caller.h"
#include "program.h"

#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace orlo::test {

IoctlCaller call_ioctl = nullptr;

} // namespace orlo::test

namespace {

bool lists_only(int argc, char** argv) {
    for (int i = 1; i < argc; i++) {
        if (strncmp(argv[i], "--gtest_list_tests", 18) == 0) {
            return true;
        }
    }
    return false;
}

/// Opened before entering, because the chroot form hides the build folder.
bool open_library() {
    void* library = dlopen(IOCTL_CALLER, RTLD_NOW | RTLD_LOCAL);
    void* symbol = library == nullptr ? nullptr : dlsym(library, "call_ioctl");
    orlo::test::call_ioctl = reinterpret_cast<orlo::test::IoctlCaller>(symbol);
    return symbol != nullptr;
}

/// Gives each test the device as it was on entering, when several run in one process.
class FreshDevice : public testing::EmptyTestEventListener {
public:
    void OnTestProgramStart(const testing::UnitTest& all) override {
        several_ = all.test_to_run_count() > 1;
        if (several_) {
            orlo::test::shell("cp -a /etc /var /flash");
        }
    }

    void OnTestEnd(const testing::TestInfo& /*test*/) override {
        if (several_) {
            orlo::test::shell("cd / && rm -rf etc var && cp -a flash/etc flash/var .");
        }
    }

private:
    bool several_ = false;
};

} // namespace

int main(int argc, char** argv) {
    if (!lists_only(argc, argv)) {
        if (!open_library()) {
            fprintf(stderr, "%s\n", dlerror());
            return 1;
        }
        orlo::device::enter(orlo::device::entry_beside_program());
    }
    testing::InitGoogleTest(&argc, argv);
    if (orlo::device::inside()) {
        testing::UnitTest::GetInstance()->listeners().Append(new FreshDevice);
    }
    return RUN_ALL_TESTS();
}
