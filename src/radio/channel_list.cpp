// SPDX-License-Identifier: MIT
// Checks of a channel against a radio's bounds and against a list of eligible channels, a text such
// as "36 40 44 48 149 153 157 161".
#include "common/identity.h"
#include "common/log.h"
#include "ops/operations.h"
#include "radio/channel.h"

#include <cstdlib>
#include <cstring>

namespace orlo {

namespace {

constexpr int most_listed = 32;
constexpr int block_size = 4; // channels of one 80 MHz block

const struct {
    int first;
    int last;
} channel_bounds[radio_count] = {{1, 13}, {36, 165}};

} // namespace

int is_channel_in_radio_range(int radio, int channel) {
    if (channel == 0) {
        return 1;
    }
    return is_radio(radio) && channel >= channel_bounds[radio].first &&
           channel <= channel_bounds[radio].last;
}

int check_static_channel_in_eligible_channels(int radio, const char* list, int* first_eligible) {
    if (list == nullptr || first_eligible == nullptr) {
        return 1;
    }
    const int current = api_get_channel(radio);
    if (current < 1) {
        return 1;
    }
    char copy[128 + 1] = {};
    strncpy(copy, list, 128);
    char* rest = nullptr;
    const char* token = strtok_r(copy, " ", &rest);
    if (token == nullptr) {
        LOG_TRACE("info: eligible channel is unknown format: [%s]\n", list);
        return 1;
    }
    const int first = atoi(token);
    for (; token != nullptr; token = strtok_r(nullptr, " ", &rest)) {
        if (atoi(token) == current) {
            return 1;
        }
    }
    *first_eligible = first;
    return 0;
}

int check_second_channel_in_eligible_channels(char* list, int primary, int* second) {
    if (list == nullptr || second == nullptr) {
        return 1;
    }
    int channels[most_listed] = {};
    int count = 0;
    char* rest = nullptr;
    for (const char* token = strtok_r(list, " ", &rest); token != nullptr && count < most_listed;
         token = strtok_r(nullptr, " ", &rest)) {
        channels[count++] = atoi(token);
    }
    if (count == 0) {
        return 1;
    }
    for (int i = 0; i < count; i++) { // the last match decides
        if (channels[i] == primary) {
            *second = i / block_size == 0 ? channels[block_size] : channels[0];
        }
    }
    LOG_TRACE("*primary_channel = %d; *second_channel = %d \n", primary, *second);
    return 0;
}

} // namespace orlo
