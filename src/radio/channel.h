// SPDX-License-Identifier: MIT
// Steps of channel control that other radio operations use.
#pragma once

namespace orlo {

// 1 when the radio may be set to the channel: 0 (keep) or a number within the radio's bounds. Only
// the bounds are checked.
int is_channel_in_radio_range(int radio, int channel);

// Whether the radio must leave its channel: 0 when the channel it runs on is not in the
// blank-separated list, whose first entry is then stored; 1 when it may stay or nothing can be
// told.
int check_static_channel_in_eligible_channels(int radio, const char* list, int* first_eligible);

// Pairs the primary channel's block of four with another block of the list: the first, or the
// second when the primary lies in the first. Cuts the list into pieces. 1 when the list is empty,
// else 0; a primary that is not in the list leaves *second alone.
int check_second_channel_in_eligible_channels(char* list, int primary, int* second);

} // namespace orlo
