// Coming, going and coming again of the section, on a machine in memory.
#include "view/section_reader.hpp"

#include "core/ccore.hpp"
#include "tests/support/memory_platform.hpp"

#include <gtest/gtest.h>

#include <memory>

namespace tallowmere::test {
namespace {

constexpr std::int64_t kMillisecond = 10'000;

class SectionReaderTest : public testing::Test {
  protected:
    /// A program that holds the section.
    [[nodiscard]] std::unique_ptr<CCore> program() { return std::make_unique<CCore>(platform_, false); }
    void pass(std::int64_t milliseconds) { machine_.now += milliseconds * kMillisecond; }

    MemoryMachine machine_;
    MemoryPlatform platform_{machine_};
};

TEST_F(SectionReaderTest, MakesNoSection) {
    SectionReader reader(platform_);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(reader.refreshNow(), TLM_VIEW_NO_SECTION);
        pass(1000);
    }
    EXPECT_EQ(reader.area(), nullptr);
    EXPECT_EQ(reader.generation(), 0U);
    EXPECT_EQ(machine_.section(sectionName()), nullptr);
}

TEST_F(SectionReaderTest, AttachesToTheSectionThatIsThere) {
    const auto core = program();
    const SectionReader reader(platform_);
    EXPECT_EQ(reader.state(), TLM_VIEW_ATTACHED);
    EXPECT_EQ(reader.generation(), 1U);
    EXPECT_EQ(static_cast<const void*>(reader.area()), core->area());
}

TEST_F(SectionReaderTest, FindsASectionThatIsMadeLater) {
    SectionReader reader(platform_);
    const auto core = program();
    pass(250);
    EXPECT_EQ(reader.refresh(), TLM_VIEW_ATTACHED);
    EXPECT_EQ(reader.generation(), 1U);
}

TEST_F(SectionReaderTest, TellsThatTheLastProgramHasGoneAndLetsTheSectionGo) {
    auto one = program();
    auto other = program();
    SectionReader reader(platform_);
    one.reset();
    pass(250);
    EXPECT_EQ(reader.refresh(), TLM_VIEW_ATTACHED);
    other.reset();
    pass(250);
    EXPECT_EQ(reader.refresh(), TLM_VIEW_WRITERS_GONE);
    EXPECT_EQ(reader.area(), nullptr);
    EXPECT_EQ(reader.generation(), 1U);
    EXPECT_EQ(machine_.section(sectionName()), nullptr);
}

TEST_F(SectionReaderTest, AttachesToTheNextSection) {
    auto core = program();
    SectionReader reader(platform_);
    core.reset();
    reader.refreshNow();
    core = program();
    EXPECT_EQ(reader.refreshNow(), TLM_VIEW_ATTACHED);
    EXPECT_EQ(reader.generation(), 2U);
    EXPECT_EQ(static_cast<const void*>(reader.area()), core->area());
}

TEST_F(SectionReaderTest, NoticesANewSectionWithoutHavingSeenTheGap) {
    auto core = program();
    SectionReader reader(platform_);
    core.reset();
    core = program();
    EXPECT_EQ(reader.refreshNow(), TLM_VIEW_ATTACHED);
    EXPECT_EQ(reader.generation(), 2U);
}

TEST_F(SectionReaderTest, AsksTheSystemOnlyAfterAQuarterOfASecond) {
    auto core = program();
    SectionReader reader(platform_);
    core.reset();
    pass(249);
    EXPECT_EQ(reader.refresh(), TLM_VIEW_ATTACHED);
    EXPECT_NE(reader.area(), nullptr); // mapped, and readable
    EXPECT_EQ(readOnce(reader.area()->boatCount), 0U);
    pass(1);
    EXPECT_EQ(reader.refresh(), TLM_VIEW_WRITERS_GONE);
}

TEST_F(SectionReaderTest, AsksAgainWhenTheClockIsSetBack) {
    auto core = program();
    SectionReader reader(platform_);
    core.reset();
    pass(-3'600'000);
    EXPECT_EQ(reader.refresh(), TLM_VIEW_WRITERS_GONE);
}

TEST_F(SectionReaderTest, RefusesASectionOfAnotherSize) {
    for (const std::size_t bytes : {std::size_t{1}, kSharedAreaBytes - 1, kSharedAreaBytes + 1}) {
        const auto held = machine_.holdSection(sectionName(), bytes);
        SectionReader reader(platform_);
        EXPECT_EQ(reader.refreshNow(), TLM_VIEW_NO_SECTION) << bytes;
    }
}

TEST_F(SectionReaderTest, TriesAgainAfterAFailure) {
    const auto core = program();
    for (const Step step : {Step::CreateSection, Step::MapSection}) {
        machine_.failOnce(step);
        SectionReader reader(platform_);
        EXPECT_EQ(reader.state(), TLM_VIEW_NO_SECTION);
        EXPECT_EQ(reader.refreshNow(), TLM_VIEW_ATTACHED);
    }
}

} // namespace
} // namespace tallowmere::test
