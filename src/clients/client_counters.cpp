// Counters of the associated clients, in blocks that the agent takes over: one for each VAP.
#include "common/identity.h"
#include "common/log.h"
#include "common/text.h"
#include "ops/operations.h"
#include "orlo/exports.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

using orlo::MacText;

namespace {

constexpr size_t work_size = 0x16000;

mwl_assoc_entry entry_at(const char* table, int index) {
    mwl_assoc_entry entry;
    memcpy(&entry, table + static_cast<size_t>(index) * sizeof entry, sizeof entry);
    return entry;
}

void print_table(const char* table, int count) {
    printf("*LEN = %d \n", count);
    for (int i = 0; i < count; i++) {
        const mwl_assoc_entry assoc = entry_at(table, i);
        printf("assoc->mac: %s \n", MacText(assoc.mac).c_str());
        printf("assoc->rx_packets = %u\n", assoc.rx_packets);
        printf("assoc->tx_packets = %u\n", assoc.tx_packets);
        printf("assoc->rx_bytes = %u\n", assoc.rx_bytes);
        printf("assoc->tx_bytes = %u\n", assoc.tx_bytes);
        puts("------------");
    }
}

void print_block(const ORLOClientInfoList* block, int count) {
    const auto wide = [](uint64_t counter) { return static_cast<unsigned long long>(counter); };
    for (int i = 0; i < count; i++) {
        printf("(ORLOClientInfoList + %d)->sta_mac: %s\n", i, MacText(block[i].sta_mac).c_str());
        printf("(ORLOClientInfoList + %d)->rx_pkts: %llu\n", i, wide(block[i].rx_pkts));
        printf("(ORLOClientInfoList + %d)->tx_pkts: %llu\n", i, wide(block[i].tx_pkts));
        printf("(ORLOClientInfoList + %d)->rx_bytes: %llu\n", i, wide(block[i].rx_bytes));
        printf("(ORLOClientInfoList + %d)->tx_bytes: %llu\n", i, wide(block[i].tx_bytes));
        puts("------------");
    }
}

// The counters of `count` stations, or NULL.
ORLOClientInfoList* copy_counters(const char* table, int count) {
    auto* block = static_cast<ORLOClientInfoList*>(
        calloc(static_cast<size_t>(count), sizeof(ORLOClientInfoList)));
    if (block == nullptr) {
        return nullptr;
    }
    const bool traced = is_debug_module_level_enabled(orlo::agent_module, orlo::trace_level) != 0;
    if (traced) {
        print_table(table, count);
    }
    for (int i = 0; i < count; i++) {
        const mwl_assoc_entry entry = entry_at(table, i);
        memcpy(block[i].sta_mac, entry.mac, sizeof block[i].sta_mac);
        block[i].rx_pkts = entry.rx_packets;
        block[i].tx_pkts = entry.tx_packets;
        block[i].rx_bytes = entry.rx_bytes;
        block[i].tx_bytes = entry.tx_bytes;
    }
    if (traced) {
        print_block(block, count);
    }
    return block;
}

} // namespace

ORLOClientInfoList* get_all_associated_clients_info() {
    LOG_TRACE("Entering .... \n");
    ORLOClientInfoList* head = nullptr;
    ORLOClientInfoList** end = &head;
    // Bytes before, stations after a VAP's block is made. A query that fails leaves the number of
    // stations of the VAP before: agents know the blocks of zeros that this gives after a crowd.
    int length = 0;
    for (int slot = 0; slot < orlo::radio_count * orlo::vaps_per_radio; slot++) {
        char table[work_size] = {};
        mwl_get_assoclist(mwl_interface_name[slot], table, &length);
        length /= static_cast<int>(sizeof(mwl_assoc_entry));
        if (length == 0) {
            continue;
        }
        *end = copy_counters(table, length);
        if (*end == nullptr) {
            LOG_TRACE("error: fail to copy assoc-client statistics from nodestats. \n");
            return head;
        }
        end = &(*end)->next;
    }
    LOG_TRACE("End .... \n");
    return head;
}

int64_t api_get_assoc_client_statistics() {
    LOG_TRACE("Entering... todo !!!\n");
    LOG_TRACE("End...\n");
    return 0;
}
