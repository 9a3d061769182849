// SPDX-License-Identifier: MIT
// The link speeds in the statistics report.
#include "meshlink/statistics.h"

namespace orlo::test {

TEST_F(MeshStatistics, TellTheLinkSpeedOfEachStation) {
    // Whichever of the two writes its address in capitals.
    answer_all_sta(station(child, "0", "0") + station("06:aa:bb:cc:dd:e1", "0", "0") +
                   station("06:CA:FE:ED:FA:C1", "0", "0"));
    answer_assoclist(association("06:AA:BB:CC:DD:E1", "1", "2") +
                     association(child, "780.0", "866.5") +
                     association("06:ca:fe:ed:fa:c1", "1", "3"));
    EXPECT_THAT(part("ML VAP"), testing::MatchesRegex(".*04:11:22.*\"Link Speed\":908591104.,."
                                                      ".*04:aa:bb.*\"Link Speed\":2097152.,."
                                                      ".*04:ca:fe.*\"Link Speed\":3145728.."));
    EXPECT_THAT(part("ML STA"), HasSubstr("\"Link Speed\":2097152"))
        << "the first station of the interface";
}

TEST_F(MeshStatistics, KnowTheLinkSpeedOfWhateverTheDriverSays) {
    const struct {
        const char* rate;
        const char* speed;
    } rows[] = {
        {"0", "0"},
        {"0.0000001", "0"},
        {"0.1", "104857"},
        {"1", "1048576"},
        {"6.5", "6815744"},
        {"2047", "2146435072"},
        {"2047.99999", "2147483637"},
        {"2048", "2147483647"},
        {"1e300", "2147483647"},
        {"inf", "2147483647"},
        {"nan", "0"},
        {"-1", "0"},
        {"-5000", "0"},
        {"-inf", "0"},
    };
    for (const auto& row : rows) {
        answer_assoclist(association(child, "1", row.rate));
        EXPECT_THAT(part("ML VAP"), HasSubstr("\"Link Speed\":" + std::string(row.speed) + "}"))
            << row.rate;
        EXPECT_THAT(part("ML STA"), HasSubstr("\"Link Speed\":" + std::string(row.speed) + "}"))
            << row.rate;
        EXPECT_THAT(errors(), IsEmpty());
    }
}

TEST_F(MeshStatistics, TellNoLinkSpeedThatIsNotListed) {
    answer_assoclist("No station connected\n");
    EXPECT_THAT(part("ML VAP"), HasSubstr("\"Link Speed\":0}"));
    EXPECT_THAT(errors(), ElementsAre("get_link_speed: invalid output No "))
        << "of the first station of mesh0";
    EXPECT_THAT(door.trace(), testing::Not(testing::Contains(HasSubstr("tx: 0.0"))));
    answer_assoclist("");
    door.forget();
    EXPECT_THAT(part("ML STA"), HasSubstr("\"Link Speed\":0}"));
    EXPECT_THAT(errors(), IsEmpty());
    EXPECT_THAT(door.trace(), testing::Not(testing::Contains(HasSubstr("tx: 0.0"))));
}

TEST_F(MeshStatistics, TellNoLinkSpeedThatIsNotUnderstood) {
    const struct {
        std::string list;
        std::string line;
    } rows[] = {
        {child + " -47 dBm\n\tRX: unknown\n\tTX: 866.5 MBit/s\n", child + " unknown 866.5"},
        {child + " -47 dBm\n\tRX: 780.0\n\tTX: unknown\n", child + " 780.0 unknown"},
        {child + " -47 dBm\n\tRX: 780.0\n", child + " 780.0 "},
        {child + "\n", child + " "},
        {child + std::string(1000, 'x') + "\n\tRX: 1\n\tTX: 2\n", child + std::string(110, 'x')},
    };
    for (const auto& row : rows) {
        answer_assoclist(row.list);
        door.forget();
        EXPECT_THAT(part("ML VAP"), HasSubstr("\"Link Speed\":0}")) << row.line;
        EXPECT_THAT(errors(), ElementsAre("get_link_speed: invalid output " + row.line,
                                          "get_link_speed: invalid output " + row.line));
    }
}

TEST_F(MeshStatistics, GoOnWhenALinkSpeedCannotBeAskedFor) {
    door.fail(Call::popen, 2);
    EXPECT_THAT(part("ML VAP"), HasSubstr("\"Link Speed\":0}"));
    EXPECT_THAT(errors(), ElementsAre("get_link_speed: failed to execute " + child_speed_command));
    door.forget();
    door.fail(Call::popen, 6);
    EXPECT_THAT(part("ML STA"), HasSubstr("\"Link Speed\":0}"));
    EXPECT_THAT(errors(), ElementsAre("get_link_speed: failed to execute " + parent_speed_command));
}

TEST_F(MeshStatistics, GiveNothingButAnAddressToTheShell) {
    for (const char* address :
         {"$(touch${IFS}x)", "a;touch<x", "|touch", "`touch`", "-f/etc/passwd"}) {
        answer_all_sta(station(address, "1", "2"));
        door.forget();
        EXPECT_THAT(part("ML VAP"), HasSubstr("\"Link Speed\":0}")) << address;
        EXPECT_THAT(errors(), testing::Contains("get_link_speed: invalid output " +
                                                std::string(address).substr(0, 17)));
        EXPECT_THAT(door.trace({"read"}), testing::Not(testing::Contains(HasSubstr(address))));
    }
}

} // namespace orlo::test
