// SPDX-License-Identifier: MIT
// The radar history of a radio: each channel that it supports, with what the driver keeps of the
// channels that radar closed, in a file for the agent.
#include "common/log.h"
#include "common/text.h"
#include "ops/operations.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

using orlo::Text;

namespace {

// The steps below work in its name.
constexpr const char* get_radar_info = "api_get_radar_info";

const char* const channel_file = "/tmp/freqlist.txt";
const char* const closed_file = "/tmp/noclist.txt";

constexpr int longest_list = 64;

struct ChannelList {
    int channels[longest_list];
    int count;
};

// What the driver keeps of a closed channel. Its two numbers are its own and passed on unchanged.
struct ClosedChannel {
    uint32_t channel;
    uint16_t state;
    long time;
};

struct ClosedList {
    ClosedChannel channels[longest_list];
    int count;
};

// A file that is closed with the scope.
class File {
public:
    File(const char* path, const char* mode) : file_(fopen(path, mode)) {}
    ~File() {
        if (file_ != nullptr) {
            fclose(file_);
        }
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    explicit operator bool() const { return file_ != nullptr; }
    FILE* get() const { return file_; }

private:
    FILE* file_;
};

// Text that does not convert would be met again and again.
void skip_line(FILE* file) {
    for (int c = 0; c != '\n' && c != EOF;) {
        c = getc(file);
    }
}

bool read_channels(ChannelList& list) {
    const File file(channel_file, "r");
    if (!file) {
        LOG_TRACE_FOR(get_radar_info, "Error: open /tmp/freqlist.txt failed!!\n");
        return false;
    }
    while (list.count < longest_list) {
        const int converted = fscanf(file.get(), "%d\n", &list.channels[list.count]);
        if (converted == EOF) {
            break;
        }
        if (converted == 1) {
            list.count++;
        } else {
            skip_line(file.get());
        }
    }
    return true;
}

bool read_closed_channels(ClosedList& list) {
    const File file(closed_file, "r");
    if (!file) {
        LOG_TRACE_FOR(get_radar_info, "Error: open /tmp/noclist.txt failed!!\n");
        return false;
    }
    while (list.count < longest_list) {
        ClosedChannel each = {};
        const int converted =
            fscanf(file.get(), "%u,%hu,%ld\n", &each.channel, &each.state, &each.time);
        if (converted == EOF) {
            break;
        }
        if (converted == 3) {
            list.channels[list.count++] = each;
        } else {
            skip_line(file.get());
        }
    }
    return true;
}

// The first entry of the channel; zeros without one.
ClosedChannel find(const ClosedList& list, uint32_t channel) {
    for (int i = 0; i < list.count; i++) {
        if (list.channels[i].channel == channel) {
            return list.channels[i];
        }
    }
    return {channel, 0, 0};
}

bool write_history(const char* path, const ChannelList& channels, const ClosedList& closed) {
    unlink(path);
    const File file(path, "w");
    if (!file) {
        LOG_TRACE_FOR(get_radar_info, "Error: create %s failed!!\n", path);
        return false;
    }
    for (int i = 0; i < channels.count; i++) {
        const ClosedChannel line = find(closed, static_cast<uint32_t>(channels.channels[i]));
        fprintf(file.get(), "%u,%hu,%ld\n", line.channel, line.state, line.time);
    }
    return true;
}

} // namespace

char* api_get_radar_info(int radio) {
    LOG_TRACE("Entering ... \n");
    unlink(channel_file);
    const Text<256> list_channels("/usr/bin/iwinfo wdev%d freqlist | cut -d '(' -f 2 | "
                                  "cut -d ' ' -f 2 | cut -d ')' -f 1 1> /tmp/freqlist.txt",
                                  radio);
    if (system(list_channels) != 0) {
        LOG_TRACE("Error: create the frequency list file failed!! \n");
        return nullptr;
    }
    unlink(closed_file);
    const Text<256> list_closed("/usr/sbin/iwpriv wdev%d getcmd \"get11hNOCList\" | "
                                "grep -v \"NOC LIST\" 1> /tmp/noclist.txt",
                                radio);
    if (system(list_closed) != 0) { // also when no line is left
        LOG_TRACE("Error: create the NOC list file failed!! \n");
        return nullptr;
    }
    ChannelList channels = {};
    ClosedList closed = {};
    const Text<32> path("/tmp/radarinfo-wifi%d", radio);
    if (!read_channels(channels) || !read_closed_channels(closed) ||
        !write_history(path, channels, closed)) {
        return nullptr;
    }
    LOG_TRACE("End... path:%s  \n", path.c_str());
    return strdup(path);
}
