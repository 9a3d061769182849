// SPDX-License-Identifier: MIT
// How the library finds and uses the driver's private command, seen by the probe.
#include "support/access_point.h"

namespace orlo::test {

class DriverProbe : public AccessPoint {
protected:
    decltype(::mwl_probe)* const probe = exported<decltype(::mwl_probe)>("mwl_probe");

    // The probe of a VAP that the driver knows by these lines.
    int probe_with(const std::string& lines) {
        tell_driver("wdev0ap1", lines);
        return probe("wdev0ap1");
    }
};

static const std::string setcmd = "private setcmd 8be4 2100 0\n";

TEST_F(DriverProbe, FindsTheInterfacesOfThisDriver) {
    EXPECT_EQ(probe("wdev0"), 1);
    EXPECT_EQ(probe("wdev1ap15"), 1);
    EXPECT_EQ(probe("mon.wdev1ap15"), 1) << "a monitor is asked by its interface's name";
    EXPECT_EQ(probe("eth0"), 0);
    EXPECT_EQ(probe(""), 0);
    EXPECT_THAT(door.trace(), IsEmpty()) << "nothing is logged";
}

TEST_F(DriverProbe, CutsANameOfSixteenCharactersOrMore) {
    tell_driver("sixteen-letters!", setcmd);
    EXPECT_EQ(probe("sixteen-letters!"), 1);
    EXPECT_EQ(probe("sixteen-letters!and-more"), 1);
    EXPECT_EQ(probe("mon.sixteen-letters!"), 1);
}

TEST_F(DriverProbe, GoesByTheFirstFourBytesOfTheReply) {
    EXPECT_EQ(probe_with(setcmd), 1);
    EXPECT_EQ(probe_with(setcmd + "magic 4d52564b\n"), 0);
    EXPECT_EQ(probe_with(setcmd + "magic 4c56524d\n"), 0) << "the bytes the other way round";
    EXPECT_EQ(probe_with(setcmd + "magic 0\n"), 0);
    EXPECT_EQ(probe_with(setcmd + "reply-size 4\n"), 1);
    EXPECT_EQ(probe_with(setcmd + "reply-size 3\n"), 0);
    EXPECT_EQ(probe_with(setcmd + "reply-size 0\n"), 0);
}

TEST_F(DriverProbe, GoesByTheReplyEvenWhenTheRequestFails) {
    EXPECT_EQ(probe_with(setcmd + "fail-after setcmd EIO\n"), 1);
    EXPECT_EQ(probe_with(setcmd + "fail setcmd EIO\n"), 0) << "there is no reply";
    EXPECT_EQ(probe_with(setcmd + "fail private EIO\n"), 0);
    EXPECT_EQ(probe_with("name IEEE 802.11\n"), 0) << "no private commands at all";
}

TEST_F(DriverProbe, FindsTheCommandWhereverItStands) {
    EXPECT_EQ(probe_with(setcmd + "private-others 1\n"), 1);
    EXPECT_EQ(probe_with(setcmd + "private-others 255\n"), 1);
    EXPECT_EQ(probe_with(setcmd + "private-others 256\n"), 0) << "more than there is room for";
    EXPECT_EQ(probe_with("private setcmd 8bff 2100 0\n"), 1) << "and by its own number";
}

TEST_F(DriverProbe, TakesNoCommandOfASimilarName) {
    for (const char* name : {"setcmd2", "setcm", "SETCMD", "setcmd0123456789"}) {
        const std::string other = std::string("private ") + name + " 8be1 2100 0\n";
        EXPECT_EQ(probe_with(other), 0) << name;
        EXPECT_EQ(probe_with(other + setcmd), 1) << "after " << name;
    }
}

TEST_F(DriverProbe, ReadsNoMoreCommandsThanThereIsRoomFor) {
    EXPECT_EQ(probe_with(setcmd + "private-count 65535\n"), 1);
    EXPECT_EQ(probe_with("private other 8be1 2100 0\nprivate-count 65535\n"), 0);
    EXPECT_EQ(probe_with("private other 8be1 2100 0\nprivate-others 255\nprivate-count 257\n"), 0);
    EXPECT_EQ(probe_with(setcmd + "private-count 0\n"), 0) << "and none that is not counted";
    EXPECT_EQ(probe_with(setcmd + "private-others 4\nprivate-count 4\n"), 0);
}

TEST_F(DriverProbe, NeedsACommandThatTakesText) {
    for (unsigned type = 0; type < 8; type++) {
        char line[64];
        snprintf(line, sizeof line, "private setcmd 8be4 %x 2100\n", type << 12 | 256);
        EXPECT_EQ(probe_with(line), type == 2 ? 1 : 0) << type;
    }
    EXPECT_EQ(probe_with("private setcmd 8be4 2000 0\n"), 0) << "of no length";
    EXPECT_EQ(probe_with("private setcmd 8be4 a900 0\n"), 1) << "other bits mean nothing here";
}

TEST_F(DriverProbe, HasRoomFor128BytesOfReply) {
    EXPECT_EQ(probe_with(setcmd + "reply-room 128\n"), 1);
    EXPECT_EQ(probe_with(setcmd + "reply-room 127\n"), 0);
    EXPECT_EQ(probe_with(setcmd + "reply-room 129\n"), 0);
}

TEST_F(DriverProbe, GivesTheWholeBufferOfTheText) {
    EXPECT_EQ(probe_with("private setcmd 8be4 2100 0\n"), 1);
    EXPECT_EQ(probe_with("private setcmd 8be4 20ff 0\n"), 0) << "256 bytes do not go into 255";
}

} // namespace orlo::test
