// SPDX-License-Identifier: MIT
// The agent's memory, as the kernel counts it in pages.
#include "orlo/exports.h"

#include <cstdio>
#include <unistd.h>

int api_show_mem_usage(const char* tag) {
    FILE* statm = fopen("/proc/self/statm", "r");
    if (statm == nullptr) {
        return 0;
    }
    long size = 0;
    long resident = 0;
    long share = 0;
    long text = 0;
    long lib = 0;
    long data = 0;
    long dirty = 0;
    const int count = fscanf(statm, "%ld %ld %ld %ld %ld %ld %ld", &size, &resident, &share, &text,
                             &lib, &data, &dirty);
    if (count == 7) {
        fprintf(stderr,
                "%s [ORLOA %d] VmSize = %05ld\tVmRss = %05ld\tSharePage = %05ld\tText = %05ld\t"
                "Lib = %05ld\tDataStack = %05ld\tDirtyPage = %05ld\n",
                tag == nullptr ? "" : tag, getpid(), size, resident, share, text, lib, data, dirty);
    }
    return fclose(statm);
}
