// SPDX-License-Identifier: MIT
// How fast counters grow.
#include "traffic.h"

#include <gtest/gtest.h>

using namespace orloctl;

namespace {

std::optional<double> rate(const std::optional<uint64_t>& before,
                           const std::optional<uint64_t>& after, double seconds) {
    Counts first = {};
    Counts second = {};
    first[tx_bytes] = before;
    second[tx_bytes] = after;
    const Rates result = rates(first, second, seconds);
    EXPECT_EQ(result[rx_bytes], std::nullopt) << "which is not counted";
    return result[tx_bytes];
}

} // namespace

TEST(Traffic, a_rate_is_the_growth_by_the_time_that_passed) {
    EXPECT_EQ(rate(1000, 4000, 2), 1500.0);
    EXPECT_EQ(rate(1000, 1001, 4), 0.25);
    EXPECT_EQ(rate(7, 7, 0.5), 0.0);
    EXPECT_EQ(rate(UINT64_MAX - 1, UINT64_MAX, 1), 1.0);
}

TEST(Traffic, there_is_no_rate_where_a_counter_went_back_or_was_not_read) {
    EXPECT_EQ(rate(1000, 999, 1), std::nullopt);
    EXPECT_EQ(rate(std::nullopt, 5, 1), std::nullopt);
    EXPECT_EQ(rate(5, std::nullopt, 1), std::nullopt);
    EXPECT_EQ(rate(5, 6, 0), std::nullopt);
}

TEST(Traffic, each_counter_has_its_own_rate) {
    const Counts before = {1, 2, 3, 4, 5, 6};
    const Counts after = {2, 4, 6, 8, 10, 12};
    const Rates expected = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(rates(before, after, 1), expected);
}
