// SPDX-License-Identifier: MIT
// What the device tells of itself.
#include "support/access_point.h"

#include <cstdlib>
#include <memory>
#include <unistd.h>

namespace orlo::test {

class Information : public AccessPoint {
protected:
    static std::string text(char* heap_text) {
        const std::unique_ptr<char, decltype(&free)> owned(heap_text, free);
        return owned == nullptr ? "(NULL)" : owned.get();
    }

    std::string get(const char* property) {
        door.forget();
        return text(ops.api_get_system_information(property));
    }

    std::string version(const char* type) {
        door.forget();
        return text(ops.api_get_fw_version(type));
    }

    const std::string own_ = "log api_get_system_information: ";
};

TEST_F(Information, HasAModel) {
    EXPECT_EQ(get("model"), "AP-VIRTUAL");
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... property:model", own_ + "model: AP-VIRTUAL"));
    configure("system.@system[0].model", "exactly sixteen!");
    EXPECT_EQ(get("model"), "exactly sixteen!");
    configure("system.@system[0].model", "exactly sixteen! and more");
    EXPECT_EQ(get("model"), "exactly sixteen!");
}

TEST_F(Information, WithoutAModelHasNoneEvenIfItHadOne) {
    EXPECT_EQ(get("model"), "AP-VIRTUAL");
    configure("system.@system[0].model", "");
    EXPECT_EQ(get("model"), "");
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... property:model", own_ + "Get System Model Failed"));
}

TEST_F(Information, HasACountry) {
    EXPECT_EQ(get("country"), "US");
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... property:country", own_ + "country: US"));
    ASSERT_EQ(ops.api_apply_country_code("0123456789abc"), 0);
    EXPECT_EQ(get("country"), "0123456789") << "staged, up to ten characters";
    ASSERT_EQ(ops.api_apply_country_code("DE"), 0);
    EXPECT_EQ(get("country"), "DE");
}

TEST_F(Information, WithoutACountryHasNoneEvenIfItHadOne) {
    EXPECT_EQ(get("country"), "US");
    configure("system.country.countrycode", "");
    EXPECT_EQ(get("country"), "");
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... property:country",
                                          own_ + "Get Country Code Failed"));
}

TEST_F(Information, HasAPlatform) {
    EXPECT_EQ(get("platform"), "Marvell");
    EXPECT_THAT(door.trace(),
                ElementsAre(own_ + "Entering... property:platform", own_ + "platform:Marvell"));
}

TEST_F(Information, HasABaseAddressFromTheBootLoader) {
    replace_tool("fw_printenv", "[ \"$*\" = ethaddr ] && echo ethaddr=02:00:00:00:00:99");
    EXPECT_EQ(get("base-mac"), "02:00:00:00:00:99");
    EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... property:base-mac",
                                          "read fw_printenv ethaddr | cut -d'=' -f2 | tr -d '\n'",
                                          own_ + "mac:[02:00:00:00:00:99]"));
}

TEST_F(Information, OfTheSampleDeviceHasABaseAddress) {
    EXPECT_THAT(get("base-mac"), testing::MatchesRegex("02(:[0-9a-f][0-9a-f]){5}"));
}

TEST_F(Information, TheBaseAddressIsWhatFollowsTheEqualsSignOfEachLine) {
    const struct {
        const char* script;
        std::string mac;
    } rows[] = {
        {"exit 0", ""},
        {"exit 1", ""},
        {"kill -9 $$", ""},
        {"echo ethaddr=", ""},
        {"echo none", "none"},
        {"printf ethaddr=02:01", "02:01"},
        {"echo ethaddr=02:01; echo eth1addr=02:02", "02:0102:02"},
        {"printf 'ethaddr=%0300d\\n' 0", std::string(127, '0')},
    };
    for (const auto& row : rows) {
        replace_tool("fw_printenv", row.script);
        EXPECT_EQ(get("base-mac"), row.mac) << row.script;
        EXPECT_EQ(door.trace().back(), own_ + "mac:[" + row.mac + "]");
    }
}

TEST_F(Information, TheBaseAddressIsEmptyWhenTheBootLoaderCannotBeAsked) {
    door.fail(Call::popen);
    EXPECT_EQ(get("base-mac"), "");
    EXPECT_EQ(door.trace().back(), own_ + "mac:[]");
}

TEST_F(Information, OfAnUnknownPropertyIsEmpty) {
    for (const char* property : {"Model", "models", "mac", "", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(get(property), "");
        const std::string shown = property == nullptr ? "NULL" : property;
        EXPECT_THAT(door.trace(), ElementsAre(own_ + "Entering... property:" + shown,
                                              own_ + "End... unknown property: " + shown + " "));
    }
}

TEST_F(Information, HasAFirmwareVersion) {
    write_file("/etc/version", "2.3.4 build 5\nsecond line\n");
    EXPECT_EQ(version("version"), "2.3.4 build 5");
    EXPECT_THAT(door.trace(), ElementsAre("log api_get_fw_version: Entering... type:version",
                                          "log api_get_fw_version: version: 2.3.4 build 5"));
}

TEST_F(Information, TheFirmwareVersionIsOneLineOf127Characters) {
    const struct {
        std::string file;
        std::string version;
    } rows[] = {{"", ""},
                {"\n2.3.4\n", ""},
                {"2.3.4", "2.3.4"},
                {std::string(127, 'v') + "\n", std::string(127, 'v')},
                {std::string(128, 'v'), std::string(127, 'v')},
                {std::string("2.3\0.4\n", 7), "2.3"}};
    for (const auto& row : rows) {
        write_file("/etc/version", row.file);
        EXPECT_EQ(version("version"), row.version);
    }
    unlink("/etc/version");
    EXPECT_EQ(version("version"), "");
    EXPECT_EQ(door.trace().back(), "log api_get_fw_version: version: ");
}

TEST_F(Information, OfTheSampleDeviceHasAVersion) {
    EXPECT_EQ(version("version") + "\n", read_file("/etc/version"));
    EXPECT_THAT(version("version"), testing::MatchesRegex("[0-9]+[.][0-9]+[.][0-9]+"));
}

TEST_F(Information, OtherVersionsAreUnknown) {
    for (const char* type : {"Version", "versions", "", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(version(type), "Unknown");
        const std::string shown = type == nullptr ? "NULL" : type;
        EXPECT_THAT(door.trace(),
                    ElementsAre("log api_get_fw_version: Entering... type:" + shown,
                                "log api_get_fw_version: End... unknown type: " + shown + " "));
    }
}

} // namespace orlo::test
