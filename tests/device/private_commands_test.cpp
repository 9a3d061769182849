// SPDX-License-Identifier: MIT
// The private commands of the simulated driver: their table, and requests as text.
#include "driver_request.h"

#include <cstring>
#include <vector>

using namespace orlo::test;

namespace {

const std::string setcmd = "private setcmd 8be4 2100 0\n";

std::string hex_of(const unsigned char* bytes, size_t count) {
    std::string text;
    for (size_t i = 0; i < count; i++) {
        char byte[8];
        snprintf(byte, sizeof byte, "%02x", bytes[i]);
        text += byte;
    }
    return text;
}

class PrivateCommands : public DriverRequest {
protected:
    /// The commands that an interface says it has, at most as many as are offered room.
    int ask_for_table(std::vector<iw_priv_args>& table, size_t* said = nullptr) const {
        iwreq request = request_for("wdev0ap0");
        request.u.data.pointer = table.data();
        request.u.data.length = static_cast<decltype(request.u.data.length)>(table.size());
        const int error = ask(SIOCGIWPRIV, request);
        if (said != nullptr) {
            *said = request.u.data.length;
        }
        return error;
    }

    /// "setcmd" with any text, as programs of the device send it.
    int send_text(const std::string& text, unsigned length = 256, unsigned flags = 0,
                  unsigned long number = 0x8be4) const {
        char buffer[512] = {};
        text.copy(buffer, sizeof buffer - 1);
        iwreq request = request_for("wdev0ap0");
        request.u.data.pointer = buffer;
        request.u.data.length = static_cast<decltype(request.u.data.length)>(length);
        request.u.data.flags = static_cast<decltype(request.u.data.flags)>(flags);
        return ask(number, request);
    }

    static std::string text_for(unsigned operation, const void* in, unsigned in_length,
                                const void* out, size_t out_length) {
        char text[256];
        snprintf(text, sizeof text, "iwinfo %u %p %u %p %zu", operation, in, in_length, out,
                 out_length);
        return text;
    }

    /// A reply, in as many bytes as the caller takes.
    int reply_of(unsigned operation, std::vector<unsigned char>& out) const {
        return send_text(text_for(operation, in_, sizeof in_, out.data(), out.size()));
    }

    unsigned char in_[32] = {};
};

TEST_F(PrivateCommands, are_listed) {
    write_file(driver_folder + "wdev0ap0",
               "private version 8be1 0 2050\nname x\n" + setcmd + "private-others 1\n");
    std::vector<iw_priv_args> table(256);
    size_t said = 0;
    ASSERT_EQ(ask_for_table(table, &said), 0);
    EXPECT_EQ(said, 3U);
    EXPECT_STREQ(table[0].name, "other");
    EXPECT_STREQ(table[1].name, "version");
    EXPECT_EQ(table[1].cmd, 0x8be1U);
    EXPECT_EQ(table[1].get_args, 0x2050);
    EXPECT_STREQ(table[2].name, "setcmd");
    EXPECT_EQ(table[2].cmd, 0x8be4U);
    EXPECT_EQ(table[2].set_args, 0x2100);
    EXPECT_STREQ(table[3].name, "");
}

TEST_F(PrivateCommands, are_there_on_every_interface_of_a_fresh_device) {
    for (const char* name : {"wdev0", "wdev1", "wdev0ap0", "wdev1ap15"}) {
        std::vector<iw_priv_args> table(1);
        iwreq request = request_for(name);
        request.u.data.pointer = table.data();
        request.u.data.length = 1;
        EXPECT_EQ(ask(SIOCGIWPRIV, request), 0) << name;
        EXPECT_STREQ(table[0].name, "setcmd") << name;
    }
}

TEST_F(PrivateCommands, need_room_for_all_of_them) {
    write_file(driver_folder + "wdev0ap0", setcmd + "private-others 2\n");
    std::vector<iw_priv_args> table(2);
    size_t said = 0;
    EXPECT_EQ(ask_for_table(table, &said), E2BIG);
    EXPECT_EQ(said, 3U) << "which the driver tells";
    EXPECT_STREQ(table[0].name, "");
    table.resize(3);
    EXPECT_EQ(ask_for_table(table), 0);
}

TEST_F(PrivateCommands, may_be_said_to_be_any_number) {
    write_file(driver_folder + "wdev0ap0", setcmd + "private-count 65535\n");
    std::vector<iw_priv_args> table(1);
    size_t said = 0;
    EXPECT_EQ(ask_for_table(table, &said), 0);
    EXPECT_EQ(said, 65535U);
}

TEST_F(PrivateCommands, need_their_lines) {
    for (const char* lines : {"", "private\n", "private setcmd\n", "private setcmd 8be4 2100\n",
                              "private setcmd 8be4 20100 0\n", "private setcmd x 2100 0\n"}) {
        write_file(driver_folder + "wdev0ap0", lines);
        std::vector<iw_priv_args> table(1);
        EXPECT_EQ(ask_for_table(table), EOPNOTSUPP) << lines;
        EXPECT_EQ(send_text("iwinfo"), EOPNOTSUPP) << lines;
    }
}

TEST_F(PrivateCommands, fill_the_callers_buffer_and_no_more) {
    std::vector<unsigned char> block(128);
    ASSERT_EQ(reply_of(1, block), 0);
    EXPECT_EQ(hex_of(block.data(), 6), "4c56524deeee");
    EXPECT_EQ(block[127], 0xee);
    block.assign(5, 0);
    ASSERT_EQ(reply_of(1, block), 0);
    EXPECT_EQ(hex_of(block.data(), 5), "4c56524dee");
    block.assign(200, 0);
    ASSERT_EQ(reply_of(1, block), 0);
    EXPECT_EQ(hex_of(block.data() + 127, 2), "ee00") << "the block has 128 bytes";
}

TEST_F(PrivateCommands, can_be_made_to_lie) {
    write_file(driver_folder + "wdev0ap0",
               setcmd + "magic 01020304\nstation-count -2\nreply-size 14\n");
    std::vector<unsigned char> table(32768);
    ASSERT_EQ(reply_of(2, table), 0);
    EXPECT_EQ(hex_of(table.data(), 18), "04030201eeeeeeeefeffffffeeee00000000");
}

TEST_F(PrivateCommands, fail_when_a_test_wants_it) {
    std::vector<unsigned char> block(128);
    write_file(driver_folder + "wdev0ap0", setcmd + "fail setcmd EPERM\n");
    EXPECT_EQ(reply_of(1, block), EPERM);
    EXPECT_EQ(block[0], 0);
    write_file(driver_folder + "wdev0ap0", setcmd + "fail-after setcmd EPERM\n");
    EXPECT_EQ(reply_of(1, block), EPERM);
    EXPECT_EQ(block[0], 0x4c);
    write_file(driver_folder + "wdev0ap0", setcmd + "fail private ENOMEM\n");
    std::vector<iw_priv_args> table(1);
    EXPECT_EQ(ask_for_table(table), ENOMEM);
}

TEST_F(PrivateCommands, answer_to_their_own_number_only) {
    std::vector<unsigned char> block(128);
    const std::string text = text_for(1, in_, sizeof in_, block.data(), block.size());
    write_file(driver_folder + "wdev0ap0", "private setcmd 8bf0 2100 0\n");
    EXPECT_EQ(send_text(text, 256, 0, 0x8be4), EOPNOTSUPP);
    EXPECT_EQ(send_text(text, 256, 0, 0x8bf0), 0);
}

TEST_F(PrivateCommands, take_the_text_that_the_driver_knows) {
    std::vector<unsigned char> block(128);
    const std::string good = text_for(1, in_, sizeof in_, block.data(), block.size());
    EXPECT_EQ(send_text(good), 0);
    EXPECT_EQ(send_text(good, 257), E2BIG) << "more than the command takes";
    EXPECT_EQ(send_text(good, 10), EINVAL) << "less than there is";
    EXPECT_EQ(send_text(good, 256, 1), EINVAL);
    EXPECT_EQ(send_text(good + " more"), EINVAL);
    EXPECT_EQ(send_text(""), EINVAL);
    EXPECT_EQ(send_text(std::string(400, 'x')), EINVAL);
    EXPECT_EQ(send_text(text_for(3, in_, sizeof in_, block.data(), block.size())), EINVAL);
    EXPECT_EQ(send_text(text_for(1, in_, 31, block.data(), block.size())), EINVAL);
    EXPECT_EQ(send_text(text_for(1, in_, sizeof in_, nullptr, block.size())), EFAULT);
    EXPECT_EQ(send_text(text_for(1, nullptr, sizeof in_, block.data(), block.size())), EFAULT);
    in_[31] = 1;
    EXPECT_EQ(send_text(good), EINVAL) << "nothing but zeros goes in";
}

TEST_F(PrivateCommands, survive_wild_requests) {
    EXPECT_EQ(ask(0x8be4, "wdev0ap0"), EFAULT);
    EXPECT_EQ(ask(SIOCGIWPRIV, "wdev0ap0"), E2BIG);
    iwreq request = request_for("wdev0ap0");
    request.u.data.length = 256;
    EXPECT_EQ(ask(SIOCGIWPRIV, request), EFAULT);
    request = request_for("wdev0ap0");
    request.u.data.flags = 1;
    EXPECT_EQ(ask(SIOCGIWPRIV, request), EINVAL);
}

} // namespace
