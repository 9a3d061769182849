// SPDX-License-Identifier: MIT
// The list of associated clients in two files.
#include "clients/clients.h"

namespace orlo::test {

class ClientFiles : public Clients {
protected:
    using Write = void(const char* path);
    Write* const write_addresses = exported<Write>("write_assoc_client_to_file");
    Write* const write_records = exported<Write>("write_assoc_client_detail_to_file");

    // What a function writes, seen in a file that held something longer before.
    static std::string written(Write* write) {
        write_file("/tmp/written", std::string(10'000, '?'));
        write("/tmp/written");
        return read_file("/tmp/written");
    }

    static std::string bytes_of(const assoc_client_record& record) {
        return {reinterpret_cast<const char*>(&record), sizeof record};
    }
};

TEST_F(ClientFiles, HaveALineOfAddressesForEachVapWithClients) {
    stations("wdev0ap2", "a4:5e:60:01:02:03\n00:11:22:33:44:55\n");
    stations("wdev1ap15", "FF:EE:DD:0C:0B:0A\n");
    ASSERT_EQ(prepare(), 0);
    EXPECT_EQ(written(write_addresses), "0,2,a4:5e:60:01:02:03,00:11:22:33:44:55\n"
                                        "1,15,ff:ee:dd:0c:0b:0a\n");
}

TEST_F(ClientFiles, HaveTheRecordsOfAllClientsInTheirOrder) {
    stations("wdev0ap2", "a4:5e:60:01:02:03 signal=-40\n00:11:22:33:44:55 rate=7\n");
    stations("wdev1ap15", "ff:ee:dd:0c:0b:0a ipv4=10.1.2.3\n");
    ASSERT_EQ(prepare(), 0);
    EXPECT_EQ(written(write_records),
              bytes_of(record(0, 2, 0)) + bytes_of(record(0, 2, 1)) + bytes_of(record(1, 15)));
}

TEST_F(ClientFiles, AreEmptyWithoutClients) {
    EXPECT_EQ(written(write_addresses), "");
    EXPECT_EQ(written(write_records), "");
    EXPECT_THAT(door.trace(), ElementsAre("log write_assoc_client_to_file: Entering .... ",
                                          "log write_assoc_client_to_file: End .... ",
                                          "log write_assoc_client_detail_to_file: Entering .... ",
                                          "log write_assoc_client_detail_to_file: End .... "));
}

TEST_F(ClientFiles, HoldFullTables) {
    many_stations("wdev1ap4", 341);
    ASSERT_EQ(prepare(), 0);
    EXPECT_EQ(written(write_addresses).size(), 3 + 341 * 18 + 1U);
    EXPECT_EQ(written(write_records).size(), 341 * 134U);
}

TEST_F(ClientFiles, ThatCannotBeMadeAreNamed) {
    write_addresses("/nowhere/addresses");
    write_records("/nowhere/records");
    write_addresses(nullptr);
    EXPECT_THAT(door.trace(),
                ElementsAre("log write_assoc_client_to_file: Entering .... ",
                            "log write_assoc_client_to_file: error: failed to create file "
                            "'/nowhere/addresses'",
                            "log write_assoc_client_detail_to_file: Entering .... ",
                            "log write_assoc_client_detail_to_file: error: failed to create file "
                            "'/nowhere/records'",
                            "log write_assoc_client_to_file: Entering .... ",
                            "log write_assoc_client_to_file: error: failed to create file 'NULL'"));
}

TEST_F(ClientFiles, AreGeneratedFromAFreshList) {
    stations("wdev0ap2", "a4:5e:60:01:02:03\n00:11:22:33:44:55\n");
    EXPECT_EQ(ops.api_generate_assoc_client_file(), 0);
    EXPECT_EQ(read_file("/tmp/assoc_client"), "0,2,a4:5e:60:01:02:03,00:11:22:33:44:55\n");
    EXPECT_EQ(read_file("/tmp/assoc_client_detail").size(), 2 * 134U);
    EXPECT_THAT(door.trace(), ElementsAre("log api_generate_assoc_client_file: Entering...",
                                          "log prepare_assoc_client_list: Entering .... ",
                                          "log destroy_assoc_client_list: Entering .... ",
                                          "log destroy_assoc_client_list: End .... ",
                                          "log prepare_assoc_client_list: End .... ",
                                          "log write_assoc_client_to_file: Entering .... ",
                                          "log write_assoc_client_to_file: End .... ",
                                          "log write_assoc_client_detail_to_file: Entering .... ",
                                          "log write_assoc_client_detail_to_file: End .... ",
                                          "log api_generate_assoc_client_file: End..."));
    stations("wdev0ap2", "");
    EXPECT_EQ(ops.api_generate_assoc_client_file(), 0);
    EXPECT_EQ(read_file("/tmp/assoc_client"), "");
    EXPECT_EQ(read_file("/tmp/assoc_client_detail"), "");
    EXPECT_TRUE(exists("/tmp/assoc_client_detail"));
}

TEST_F(ClientFiles, StayAsTheyAreWhenTheListCannotBeCompleted) {
    configure("wireless.wifi1vap1.mode", "quilt");
    stations("wdev0ap2", "a4:5e:60:01:02:03\n");
    write_file("/tmp/assoc_client", "old\n");
    write_file("/tmp/assoc_client_detail", "older\n");
    door.fail(Call::popen);
    EXPECT_EQ(ops.api_generate_assoc_client_file(), 0);
    EXPECT_EQ(read_file("/tmp/assoc_client"), "old\n");
    EXPECT_EQ(read_file("/tmp/assoc_client_detail"), "older\n");
    EXPECT_EQ(door.trace().back(), "log api_generate_assoc_client_file: End...");
}

TEST_F(ClientFiles, DoNotDependOnEachOther) {
    stations("wdev0ap2", "a4:5e:60:01:02:03\n");
    door.fail(Call::fopen);
    EXPECT_EQ(ops.api_generate_assoc_client_file(), 0);
    EXPECT_FALSE(exists("/tmp/assoc_client"));
    EXPECT_EQ(read_file("/tmp/assoc_client_detail").size(), 134U);
    EXPECT_THAT(door.trace(), testing::Contains("log write_assoc_client_to_file: error: failed to "
                                                "create file '/tmp/assoc_client'"));
    door.fail(Call::fopen, 2);
    door.forget();
    EXPECT_EQ(ops.api_generate_assoc_client_file(), 0);
    EXPECT_EQ(read_file("/tmp/assoc_client"), "0,2,a4:5e:60:01:02:03\n");
    EXPECT_THAT(door.trace(),
                testing::Contains("log write_assoc_client_detail_to_file: error: failed to create "
                                  "file '/tmp/assoc_client_detail'"));
}

} // namespace orlo::test
