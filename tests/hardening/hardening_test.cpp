// SPDX-License-Identifier: MIT
// Every library and program that a device gets.
#include "elf_file.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class BuiltFile : public testing::TestWithParam<const char*> {
protected:
    const ElfFile file{GetParam()};
};

TEST_P(BuiltFile, IsResolvedAtOnceAndItsTablesAreReadOnlyFromThenOn) {
    EXPECT_NE(file.segment(PT_GNU_RELRO), nullptr);
    const bool now = (file.dynamic(DT_FLAGS) & DF_BIND_NOW) != 0;
    const bool now_1 = (file.dynamic(DT_FLAGS_1) & DF_1_NOW) != 0;
    EXPECT_TRUE(now || now_1);
}

TEST_P(BuiltFile, ExecutesNothingThatCanBeWritten) {
    const Elf64_Phdr* const stack = file.segment(PT_GNU_STACK);
    ASSERT_NE(stack, nullptr);
    EXPECT_EQ(stack->p_flags & PF_X, 0U);
    for (const Elf64_Phdr& segment : file.segments()) {
        if (segment.p_type == PT_LOAD) {
            EXPECT_NE(segment.p_flags & (PF_W | PF_X), unsigned{PF_W | PF_X});
        }
    }
    EXPECT_EQ(file.dynamic(DT_TEXTREL), 0U);
    EXPECT_EQ(file.dynamic(DT_FLAGS) & DF_TEXTREL, 0U);
}

TEST_P(BuiltFile, RunsAtAnyAddress) {
    const bool is_program = file.segment(PT_INTERP) != nullptr;
    EXPECT_EQ((file.dynamic(DT_FLAGS_1) & DF_1_PIE) != 0, is_program);
}

TEST_P(BuiltFile, NoticesAnOverwrittenStack) {
    EXPECT_EQ(file.imports().count("__stack_chk_fail"), 1U);
}

// With optimisation g++ replaces each of them by its checked form, "__fprintf_chk".
TEST_P(BuiltFile, ChecksWhatItPrints) {
#ifndef ORLO_CHECKED_BUFFERS
    GTEST_SKIP() << "needs g++ and optimisation";
#endif
    const std::set<std::string> imports = file.imports();
    for (const char* unchecked : {"printf", "fprintf", "vprintf", "vfprintf", "dprintf"}) {
        EXPECT_EQ(imports.count(unchecked), 0U) << unchecked;
    }
}

INSTANTIATE_TEST_SUITE_P(Device, BuiltFile, testing::Values(ORLO_BUILT_FILES),
                         [](const testing::TestParamInfo<const char*>& info) {
                             std::string name = info.param;
                             name = name.substr(name.rfind('/') + 1);
                             std::replace_if(
                                 name.begin(), name.end(), [](char c) { return isalnum(c) == 0; },
                                 '_');
                             return name;
                         });

TEST(Library, NoticesAnOverfullBuffer) {
#ifndef ORLO_CHECKED_BUFFERS
    GTEST_SKIP() << "needs g++ and optimisation";
#endif
    const std::set<std::string> imports = ElfFile(ORLO_LIBRARY).imports();
    EXPECT_EQ(imports.count("__snprintf_chk") + imports.count("__vsnprintf_chk"), 2U);
}

TEST(Library, FitsOnASmallFlash) {
#ifndef ORLO_RELEASE
    GTEST_SKIP() << "only a release is as small as it can be";
#endif
    char stripped[] = "/tmp/liborlovendor-XXXXXX";
    const int fd = mkstemp(stripped);
    ASSERT_GE(fd, 0);
    close(fd);
    const std::string command = std::string(ORLO_STRIP " -o ") + stripped + " " ORLO_LIBRARY;
    ASSERT_EQ(system(command.c_str()), 0); // NOLINT(cert-env33-c): a tool of the build
    struct stat info = {};
    ASSERT_EQ(stat(stripped, &info), 0);
    unlink(stripped);
    EXPECT_LE(info.st_size, 160 * 1000);
}

} // namespace
