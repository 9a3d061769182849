// SPDX-License-Identifier: MIT
// The report of the agent's memory.
#include "support/access_point.h"

#include <unistd.h>

namespace orlo::test {

using MemoryUsage = AccessPoint;

// The seven page counts of a report line that starts with the tag; none if it has another form.
static std::vector<long> counts_of(const std::string& line, const std::string& tag) {
    const std::string start = tag + " [ORLOA " + std::to_string(getpid()) + "] ";
    long n[7] = {};
    int end = 0;
    const bool fits =
        line.compare(0, start.size(), start) == 0 &&
        sscanf(line.c_str() + start.size(),
               "VmSize = %ld\tVmRss = %ld\tSharePage = %ld\tText = %ld\tLib = %ld\tDataStack = "
               "%ld\tDirtyPage = %ld%n",
               &n[0], &n[1], &n[2], &n[3], &n[4], &n[5], &n[6], &end) == 7 &&
        line.substr(start.size() + static_cast<size_t>(end)) == "\n";
    return fits ? std::vector<long>(n, n + 7) : std::vector<long>();
}

TEST_F(MemoryUsage, PrintsSevenPageCountsAfterTheTag) {
    if (!exists("/proc/self/statm")) {
        GTEST_SKIP() << "this form of the access point has no /proc";
    }
    int result = -1;
    const std::string line = stderr_of([&] { result = ops.api_show_mem_usage("after apply"); });
    EXPECT_EQ(result, 0);
    const std::vector<long> counts = counts_of(line, "after apply");
    ASSERT_EQ(counts.size(), 7U) << line;
    EXPECT_GT(counts[0], counts[1]) << "pages in all, pages resident";
    EXPECT_GT(counts[1], 0);
    EXPECT_THAT(line, HasSubstr("\tLib = 00000\t")) << "five digits at least";
    EXPECT_EQ(counts_of(stderr_of([&] { ops.api_show_mem_usage(nullptr); }), "").size(), 7U);
    EXPECT_THAT(door.trace(), IsEmpty());
}

TEST_F(MemoryUsage, PrintsTheCountsInTheirOrderAndAtLeastFiveDigits) {
    write_file("/tmp/statm", "1 22 333 4444 55555 666666 7777777\n");
    door.redirect("/tmp/statm");
    EXPECT_EQ(stderr_of([&] { ops.api_show_mem_usage("t"); }),
              "t [ORLOA " + std::to_string(getpid()) +
                  "] VmSize = 00001\tVmRss = 00022\tSharePage = 00333\tText = 04444\tLib = 55555\t"
                  "DataStack = 666666\tDirtyPage = 7777777\n");
}

TEST_F(MemoryUsage, PrintsNothingWhenTheCountsCannotBeRead) {
    door.fail(Call::fopen);
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(ops.api_show_mem_usage("tag"), 0); }), "");
    for (const char* text : {"", "1 2 3 4 5 6\n", "1 2 3 4 5 6 x\n"}) {
        write_file("/tmp/statm", text);
        door.redirect("/tmp/statm");
        EXPECT_EQ(stderr_of([&] { EXPECT_EQ(ops.api_show_mem_usage("tag"), 0); }), "") << text;
    }
}

TEST_F(MemoryUsage, LeavesNoFileOpen) {
    const int next = next_descriptor();
    stderr_of([&] { ops.api_show_mem_usage("tag"); });
    EXPECT_EQ(next_descriptor(), next);
}

TEST_F(MemoryUsage, IsAlsoExported) {
    EXPECT_EQ(exported<decltype(::api_show_mem_usage)>("api_show_mem_usage"),
              ops.api_show_mem_usage);
}

} // namespace orlo::test
