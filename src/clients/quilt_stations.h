// The stations of a quilt VAP, which stand in the driver's debug file instead of its table.
#pragma once

#include "common/text.h"

namespace orlo {

// The command that prints the line of each station that this access point serves for the VAP.
inline Text<128> quilt_stations_command(const uint8_t (&bssid)[6]) {
    return Text<128>("grep -i %s /sys/kernel/debug/sta/sta_assoc_list | awk '$4==1{print}'",
                     MacText(bssid).c_str());
}

} // namespace orlo
