// Initial values that programs built on the core rely on.
#include "core/reserved_state.hpp"

#include <gtest/gtest.h>

namespace tallowmere::test {
namespace {

TEST(ReservedState, ScalarsHaveTheirInitialValues) {
    const ReservedState state;
    EXPECT_EQ(state.scalar0, 2);
    for (std::uint64_t word : state.words) EXPECT_EQ(word, 0U);
    for (std::uint8_t byte : state.bytes) EXPECT_EQ(byte, 0U);
    EXPECT_EQ(state.words.size(), 2U);
    EXPECT_EQ(state.bytes.size(), 48U);
    EXPECT_EQ(state.scalar1, -1);
    EXPECT_EQ(state.scalar2, 0);
    EXPECT_EQ(state.byte, 0);
    EXPECT_EQ(state.scalar3, 0);
    EXPECT_EQ(state.time, INT64_MAX);
    EXPECT_EQ(state.scalar4, 0);
    EXPECT_TRUE(state.container.empty());
    EXPECT_EQ(state.laterTime, INT64_MAX);
}

TEST(ReservedState, SamplesHaveNoValueAndNoTime) {
    const auto state = std::make_unique<ReservedState>();
    ASSERT_EQ(state->samples.size(), 4U);
    for (const auto& samples : state->samples) {
        ASSERT_EQ(samples.size(), 32U);
        for (const auto& sample : samples) {
            EXPECT_EQ(sample.a, 32767.0);
            EXPECT_EQ(sample.b, 32767.0);
            EXPECT_EQ(sample.time, INT64_MAX);
        }
    }
}

TEST(ReservedState, TablesAreEmpty) {
    const auto state = std::make_unique<ReservedState>();
    ASSERT_EQ(state->rowTables.size(), 2U);
    for (const auto& table : state->rowTables) {
        EXPECT_EQ(table.count, 0);
        ASSERT_EQ(table.rows.size(), 182U);
        for (const auto& row : table.rows) {
            EXPECT_EQ(row.a, 32767.0);
            EXPECT_EQ(row.b, 32767.0);
            EXPECT_EQ(row.c, 0);
            EXPECT_EQ(row.d, 0);
            EXPECT_EQ(row.e, 32767.0);
            EXPECT_EQ(row.f, 32767.0);
            EXPECT_EQ(row.g, 0);
        }
    }
    for (std::int32_t number : state->integers) EXPECT_EQ(number, 32767);
    EXPECT_EQ(state->activeTable.active, 1);
    EXPECT_EQ(state->inactiveTable.active, 0);
    EXPECT_TRUE(state->activeTable.contents.empty());
    EXPECT_TRUE(state->inactiveTable.contents.empty());
}

TEST(ReservedState, TextsAreEmptyAndNoFileIsOpen) {
    const ReservedState state;
    EXPECT_TRUE(state.text0.empty());
    EXPECT_EQ(state.flag0, 0);
    EXPECT_TRUE(state.narrowText.empty());
    EXPECT_TRUE(state.text1.empty());
    EXPECT_TRUE(state.outputName.empty());
    EXPECT_EQ(state.output, nullptr);
}

} // namespace
} // namespace tallowmere::test
