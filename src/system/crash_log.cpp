// SPDX-License-Identifier: MIT
// Crash logs, and the support archive that is made of them and of the rest of the access point.
#include "common/command.h"
#include "common/file.h"
#include "common/log.h"
#include "common/text.h"
#include "ops/operations.h"

#include <glib.h>

using orlo::CommandOutput;
using orlo::outcome;
using orlo::Text;

namespace {

constexpr const char* archive_folder = "/tmp";
constexpr const char* archive_name = "tech_support_info";

int archive_tech_info_file() {
    LOG_TRACE("Entering...\n");
    const int result = orlo::run_strictly(
        __func__, Text<128>("/bin/archive-tech-info.sh %s/%s", archive_folder, archive_name));
    LOG_TRACE("End... return: %s\n", outcome(result));
    return result;
}

int base64_encode_tech_info_file() {
    LOG_TRACE("Entering...\n");
    const int result = orlo::run_strictly(
        __func__, Text<128>("/usr/bin/openssl base64 -in %s/%s.zip -out %s/%s", archive_folder,
                            archive_name, archive_folder, archive_name));
    LOG_TRACE("End... return: %s\n", outcome(result));
    return result;
}

} // namespace

int api_clean_crashlog() {
    LOG_TRACE("Entering\n");
    orlo::run_unchecked("rm -rf /flash/crash/* > /dev/null");
    LOG_TRACE("End...\n");
    return 0;
}

int api_check_crashlog() {
    LOG_TRACE("Entering\n");
    const int ret = g_file_test("/flash/crash/exception.log", G_FILE_TEST_EXISTS) ? 1 : 0;
    LOG_TRACE("End, ret = %d\n", ret);
    return ret;
}

int api_dump_crash_log() {
    LOG_TRACE("Entering...\n");
    int result = archive_tech_info_file();
    if (result == 0) {
        result = base64_encode_tech_info_file();
        const Text<32> archive("%s/%s.zip", archive_folder, archive_name);
        if (orlo::exists(archive)) {
            unlink(archive);
        }
    }
    LOG_TRACE("End... return: %s\n", outcome(result));
    return result;
}

int api_is_dump_crash_log_executing() {
    CommandOutput running("ps | grep archive-tech-info.sh | grep -v grep");
    if (!running.started()) {
        LOG_TRACE("Failed to execute ps command.\n");
        return -1;
    }
    LOG_TRACE("Entering...\n");
    const int result = running.printed_nothing() ? -1 : 0;
    running.close();
    LOG_TRACE("End... return: %s\n", outcome(result));
    return result;
}
