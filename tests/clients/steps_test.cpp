// SPDX-License-Identifier: MIT
// Steps of the list of clients that no operation reaches in all their cases, and what happens when
// memory runs out. This program is linked so that the library's calloc and fflush come here first.
#include "clients/agent_port.h"
#include "clients/announcement.h"
#include "clients/client_list.h"
#include "clients/clients.h"
#include "driver/private_command.h"

#include <cstring>

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
extern "C" void* __real_calloc(size_t count, size_t size);
extern "C" int __real_fflush(FILE* file);

static int callocs_left = 0; // up to the one that fails; 0: none will
static int flushes = 0;

extern "C" void* __wrap_calloc(size_t count, size_t size) {
    const bool fails = callocs_left == 1;
    callocs_left -= callocs_left > 0 ? 1 : 0;
    return fails ? nullptr : __real_calloc(count, size);
}

extern "C" int __wrap_fflush(FILE* file) {
    flushes++;
    return __real_fflush(file);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace orlo::test {

using ClientSteps = Clients;

TEST_F(ClientSteps, AClientGoesToTheEndOfTheListOfAKnownVap) {
    assoc_client_record client = {};
    client.kind = 7;
    EXPECT_EQ(insert_assoc_client_list(&client, 1, 15), 0);
    client.kind = 8;
    EXPECT_EQ(insert_assoc_client_list(&client, 1, 15), 0);
    EXPECT_EQ(length(1, 15), 2U);
    EXPECT_EQ(record(1, 15, 0).kind, 7);
    EXPECT_EQ(record(1, 15, 1).kind, 8);
    const int outside[][2] = {{-1, 0}, {2, 0}, {0, -1}, {0, 16}, {1, 16}};
    for (const auto& index : outside) {
        EXPECT_EQ(insert_assoc_client_list(&client, index[0], index[1]), -1);
    }
    EXPECT_THAT(door.trace(), IsEmpty());
    destroy_assoc_client_list();
    EXPECT_THAT(everybody(), IsEmpty());
    EXPECT_EQ(insert_assoc_client_list(&client, 1, 15), 0);
    EXPECT_EQ(length(1, 15), 1U);
    destroy_assoc_client_list();
}

TEST_F(ClientSteps, TheListEndsWhereMemoryDoes) {
    stations("wdev0ap0", "a4:5e:60:00:00:01\na4:5e:60:00:00:02\n");
    stations("wdev1ap0", "a4:5e:60:00:00:03\n");
    write_file("/tmp/assoc_client", "old\n");
    callocs_left = 2;
    EXPECT_EQ(ops.api_generate_assoc_client_file(), 0);
    EXPECT_THAT(everybody(), ElementsAre("0.0 a4:5e:60:00:00:01"));
    EXPECT_EQ(read_file("/tmp/assoc_client"), "old\n");
    EXPECT_THAT(door.trace(),
                ElementsAre("log api_generate_assoc_client_file: Entering...",
                            "log prepare_assoc_client_list: Entering .... ",
                            "log destroy_assoc_client_list: Entering .... ",
                            "log destroy_assoc_client_list: End .... ",
                            "log insert_assoc_client_list: error: run out of memory for "
                            "assoc_client_list.",
                            "log fill_raw_data_into_assoc_client_list: error: failed to insert new "
                            "associated client to linked list.",
                            "log api_generate_assoc_client_file: End..."));
    EXPECT_EQ(prepare(), 0);
    EXPECT_EQ(everybody().size(), 2U);
}

TEST_F(ClientSteps, TheListOfAQuiltVapEndsWhereMemoryDoes) {
    configure("wireless.wifi0vap1.mode", "quilt");
    std::string lines;
    for (const char* last : {"1", "2", "3"}) {
        lines += std::string("a4:5e:60:00:00:0") + last + " 60 02:00:00:00:00:01 1 - - - -\n";
    }
    debug_file(lines);
    callocs_left = 3;
    EXPECT_EQ(prepare(), -1);
    EXPECT_THAT(everybody(), ElementsAre("0.1 a4:5e:60:00:00:01 a4:5e:60:00:00:02"));
    EXPECT_EQ(door.trace().back(), "log fill_raw_data_into_assoc_client_list: error: failed to "
                                   "insert new associated client to linked list.");
}

TEST_F(ClientSteps, CountersEndWhereMemoryDoes) {
    stations("wdev0ap0", "a4:5e:60:00:00:01\n");
    stations("wdev0ap1", "a4:5e:60:00:00:02\n");
    stations("wdev0ap2", "a4:5e:60:00:00:03\n");
    callocs_left = 2;
    ORLOClientInfoList* head = get_all_associated_clients_info();
    ASSERT_NE(head, nullptr);
    EXPECT_EQ(mac_of(head->sta_mac), "a4:5e:60:00:00:01");
    EXPECT_EQ(head->next, nullptr);
    free(head);
    EXPECT_EQ(door.trace().back(), "log get_all_associated_clients_info: error: fail to copy "
                                   "assoc-client statistics from nodestats. ");
    callocs_left = 1;
    EXPECT_EQ(get_all_associated_clients_info(), nullptr);
}

TEST_F(ClientSteps, EachRecordIsWrittenByItself) {
    stations("wdev0ap0", "a4:5e:60:00:00:01\na4:5e:60:00:00:02\n");
    stations("wdev1ap0", "a4:5e:60:00:00:03\n");
    ASSERT_EQ(prepare(), 0);
    flushes = 0;
    write_assoc_client_detail_to_file("/tmp/records");
    EXPECT_EQ(flushes, 3);
}

TEST_F(ClientSteps, ADatagramHasRoomFor4100Bytes) {
    const AgentPort agent;
    const std::string payload(4101, 'x');
    EXPECT_EQ(send_assoc_client_packet(payload.data(), 4100), 0);
    EXPECT_EQ(send_assoc_client_packet(payload.data(), 0), 0);
    EXPECT_THAT(agent.received(),
                ElementsAre("\x05\x04\x10" + std::string(4100, 'x'), std::string("\x05\0\0", 3)));
    EXPECT_THAT(door.trace(), ElementsAre("send 4103 bytes to 127.0.0.1:36000",
                                          "send 3 bytes to 127.0.0.1:36000"));
    door.forget();
    EXPECT_EQ(send_assoc_client_packet(payload.data(), 4101), -1);
    EXPECT_EQ(send_assoc_client_packet(payload.data(), -1), -1);
    EXPECT_EQ(send_assoc_client_packet(nullptr, 10), -1);
    EXPECT_THAT(door.trace(), IsEmpty());
}

TEST_F(ClientSteps, APrivateCommandThatIsMissingIsToldFromOneThatFails) {
    const auto request = [](const std::string& lines, unsigned operation) {
        tell_driver("wdev0ap0", lines);
        const unsigned char in[32] = {};
        unsigned char out[64] = {};
        return mwl_setcmd_request("wdev0ap0", operation, in, sizeof in, out, sizeof out);
    };
    const std::string setcmd = "private setcmd 8be4 2100 0\n";
    EXPECT_EQ(request(setcmd, probe_operation), 0);
    EXPECT_EQ(request(setcmd, stations_operation), 0);
    EXPECT_EQ(request(setcmd, 3), -1) << "the driver knows no such operation";
    EXPECT_EQ(request("private getcmd 8be5 2100 0\n", probe_operation), -2);
    EXPECT_EQ(request("private setcmd 8be4 4100 0\n", probe_operation), -1);
    EXPECT_EQ(request(setcmd + "fail private EIO\n", probe_operation), -1);
    EXPECT_EQ(request(setcmd + "fail setcmd EIO\n", probe_operation), -1);
    EXPECT_EQ(request(setcmd + "fail-after setcmd EIO\n", probe_operation), -1);
}

} // namespace orlo::test
