// SPDX-License-Identifier: MIT
// Copying the template and removing an instance: what is shared, and what is never touched.
#include "enter/files.h"
#include "program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orlo::device;
namespace test = orlo::test;

namespace {

class Files : public testing::Test {
protected:
    void SetUp() override {
        test::shell(
            "rm -rf /tmp/from /tmp/to /tmp/kept; mkdir -p /tmp/from/folder /tmp/to /tmp/kept;"
            "echo small >/tmp/from/script; chmod 4755 /tmp/from/script;"
            "head -c 100000 /dev/zero >/tmp/from/folder/program;"
            "ln -s ../nowhere /tmp/from/folder/link; echo kept >/tmp/kept/file");
    }

    static void copy(Sharing sharing) {
        copy_tree(open_folder(AT_FDCWD, "/tmp/from").get(), open_folder(AT_FDCWD, "/tmp/to").get(),
                  sharing);
    }

    static void remove(const std::string& name) {
        remove_tree(open_folder(AT_FDCWD, "/tmp").get(), name);
    }

    static struct stat info(const std::string& path) {
        struct stat result {};
        EXPECT_EQ(lstat(path.c_str(), &result), 0) << path;
        return result;
    }

    static bool is_shared(const std::string& path) {
        return info("/tmp/from/" + path).st_ino == info("/tmp/to/" + path).st_ino;
    }

    static bool exists(const std::string& path) {
        struct stat ignored {};
        return lstat(path.c_str(), &ignored) == 0;
    }
};

TEST_F(Files, a_copy_has_contents_links_and_modes) {
    copy(Sharing::None);
    EXPECT_EQ(test::shell("diff -r /tmp/from /tmp/to").out, "");
    EXPECT_EQ(info("/tmp/to/script").st_mode, info("/tmp/from/script").st_mode);
    EXPECT_EQ(test::shell("readlink /tmp/to/folder/link").out, "../nowhere\n");
    EXPECT_FALSE(is_shared("folder/program"));
    EXPECT_FALSE(is_shared("folder/link"));
}

TEST_F(Files, programs_and_links_can_be_shared_but_scripts_are_not) {
    copy(Sharing::Allowed);
    EXPECT_EQ(test::shell("diff -r /tmp/from /tmp/to").out, "");
    EXPECT_TRUE(is_shared("folder/program"));
    EXPECT_TRUE(is_shared("folder/link"));
    EXPECT_FALSE(is_shared("script"));
}

TEST_F(Files, what_cannot_be_copied_is_named) {
    test::write_file("/tmp/to/script", "in the way");
    try {
        copy(Sharing::None);
        FAIL() << "nothing was thrown";
    } catch (const std::exception& failure) {
        EXPECT_STREQ(failure.what(), "script: File exists");
    }
}

TEST_F(Files, removing_takes_all_that_a_folder_holds) {
    remove("from");
    EXPECT_FALSE(exists("/tmp/from"));
    EXPECT_TRUE(exists("/tmp/kept/file"));
}

TEST_F(Files, removing_does_not_follow_links) {
    test::shell("ln -s /tmp/kept /tmp/from/kept; ln -s /tmp/kept /tmp/link");
    remove("from");
    EXPECT_FALSE(exists("/tmp/from"));
    remove("link");
    EXPECT_FALSE(exists("/tmp/link"));
    EXPECT_TRUE(exists("/tmp/kept/file"));
}

TEST_F(Files, removing_does_not_enter_another_file_system) {
    test::shell("mkdir /tmp/from/mounted");
    if (mount("none", "/tmp/from/mounted", "tmpfs", 0, "") != 0) {
        GTEST_SKIP() << "mounting is not possible in this form";
    }
    test::write_file("/tmp/from/mounted/file", "kept");
    remove("from");
    EXPECT_TRUE(exists("/tmp/from/mounted/file"));
    EXPECT_FALSE(exists("/tmp/from/script"));
    umount2("/tmp/from/mounted", MNT_DETACH);
}

TEST_F(Files, removing_what_is_not_there_does_nothing) {
    remove("nothing");
    EXPECT_TRUE(exists("/tmp/from"));
}

TEST_F(Files, folders_are_made_with_those_above_them) {
    make_folders("/tmp/a/b/c");
    make_folders("/tmp/a/b/c");
    EXPECT_TRUE(S_ISDIR(info("/tmp/a/b/c").st_mode));
    EXPECT_THROW(make_folders("/tmp/kept/file/x"), std::exception);
}

} // namespace
