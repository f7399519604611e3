#include "tests/contract/platform_fixture.hpp"

#include <algorithm>
#include <cstdint>
#include <span>

namespace tallowmere::test {
namespace {

constexpr std::size_t kBytes = 253'336;

class SectionContract : public ContractTest {
  protected:
    [[nodiscard]] auto openOrCreate(std::size_t bytes = kBytes) {
        return platform.openOrCreateSection(fixture->sectionName(), bytes);
    }
    [[nodiscard]] auto open(std::size_t bytes = kBytes) { return platform.openSection(fixture->sectionName(), bytes); }

    [[nodiscard]] static bool isZeroed(const platform::SharedSection& section) {
        return std::ranges::all_of(std::span(section.view(), kBytes), [](std::byte b) { return b == std::byte{0}; });
    }
};

TEST_P(SectionContract, ANewSectionIsPageAlignedAndZeroed) {
    const auto section = openOrCreate();
    ASSERT_NE(section, nullptr);
    ASSERT_NE(section->view(), nullptr);
    EXPECT_FALSE(section->existed());
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(section->view()) % 4096, 0U);
    EXPECT_TRUE(isZeroed(*section));
}

TEST_P(SectionContract, ASecondObjectFindsItAndSharesItsBytes) {
    const auto first = openOrCreate();
    ASSERT_NE(first, nullptr);
    first->view()[kBytes - 1] = std::byte{42};
    const auto second = openOrCreate();
    ASSERT_NE(second, nullptr);
    ASSERT_NE(second->view(), nullptr);
    EXPECT_TRUE(second->existed());
    EXPECT_EQ(second->view()[kBytes - 1], std::byte{42});
    second->view()[0] = std::byte{7};
    EXPECT_EQ(first->view()[0], std::byte{7});
}

TEST_P(SectionContract, ItLivesOnWhenItsMakerLetsItGo) {
    auto first = openOrCreate();
    ASSERT_NE(first, nullptr);
    first->view()[1] = std::byte{42};
    const auto second = openOrCreate();
    first.reset();
    const auto third = openOrCreate();
    ASSERT_NE(third, nullptr);
    EXPECT_TRUE(third->existed());
    EXPECT_EQ(third->view()[1], std::byte{42});
}

TEST_P(SectionContract, AfterTheLastOneTheNextIsNewAndZeroed) {
    for (int i = 0; i < 3; ++i) {
        const auto section = openOrCreate();
        ASSERT_NE(section, nullptr);
        EXPECT_FALSE(section->existed());
        EXPECT_TRUE(isZeroed(*section));
        std::ranges::fill(std::span(section->view(), kBytes), std::byte{0xFF});
    }
}

TEST_P(SectionContract, OpeningOneThatIsNotThereGivesNoneAndMakesNone) {
    EXPECT_EQ(open(), nullptr);
    EXPECT_EQ(open(), nullptr);
    EXPECT_FALSE(openOrCreate()->existed());
    EXPECT_EQ(open(), nullptr);
}

TEST_P(SectionContract, OpeningOneThatIsThereSharesItAndKeepsItAlive) {
    auto maker = openOrCreate();
    ASSERT_NE(maker, nullptr);
    maker->view()[9] = std::byte{9};
    const auto opened = open();
    ASSERT_NE(opened, nullptr);
    EXPECT_TRUE(opened->existed());
    maker.reset();
    EXPECT_EQ(opened->view()[9], std::byte{9});
    const auto next = openOrCreate();
    EXPECT_TRUE(next->existed());
    EXPECT_EQ(next->view()[9], std::byte{9});
}

TEST_P(SectionContract, ASmallerSectionUnderTheNameCannotBeMapped) {
    const auto small = openOrCreate(4096);
    ASSERT_NE(small, nullptr);
    const auto large = openOrCreate(kBytes);
    ASSERT_NE(large, nullptr);
    EXPECT_TRUE(large->existed());
    EXPECT_EQ(large->view(), nullptr);
    EXPECT_EQ(open(kBytes), nullptr);
    EXPECT_NE(open(4096), nullptr);
}

TEST_P(SectionContract, OtherNamesAreOtherSections) {
    const auto one = openOrCreate();
    const auto other = platform.openOrCreateSection(fixture->sectionName() + u"_2", kBytes);
    ASSERT_NE(other, nullptr);
    EXPECT_FALSE(other->existed());
    one->view()[0] = std::byte{1};
    EXPECT_EQ(other->view()[0], std::byte{0});
}

TEST_P(SectionContract, EverybodySeesTheSameMaker) {
    const auto first = openOrCreate();
    const auto second = open();
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(first->maker(), second->maker());
}

TALLOWMERE_CONTRACT(SectionContract);

} // namespace
} // namespace tallowmere::test
