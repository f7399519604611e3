#include "tests/contract/platform_fixture.hpp"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <span>
#include <thread>

namespace tallowmere::test {
namespace {

constexpr std::size_t kBytes = 253'336;

class SectionContract : public ContractTest {
  protected:
    [[nodiscard]] auto openOrCreate(std::size_t bytes = kBytes) {
        return platform.openOrCreateSection(fixture->sectionName(), bytes);
    }
    [[nodiscard]] auto open(std::size_t bytes = kBytes) { return platform.openSection(fixture->sectionName(), bytes); }

    [[nodiscard]] auto look(std::size_t bytes = kBytes) {
        return platform.lookAtSection(fixture->sectionName(), bytes);
    }

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

TEST_P(SectionContract, LookingAtOneThatIsNotThereGivesNoneAndMakesNone) {
    EXPECT_EQ(look(), nullptr);
    EXPECT_FALSE(openOrCreate()->existed());
    EXPECT_EQ(look(), nullptr);
}

TEST_P(SectionContract, ALookSeesTheBytesAsTheyAreWritten) {
    const auto section = openOrCreate();
    ASSERT_NE(section, nullptr);
    section->view()[kBytes - 1] = std::byte{42};
    const auto seen = look();
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(seen->view()) % 4096, 0U);
    EXPECT_EQ(seen->view()[kBytes - 1], std::byte{42});
    section->view()[0] = std::byte{7};
    EXPECT_EQ(seen->view()[0], std::byte{7});
    EXPECT_TRUE(seen->isOwned());
    EXPECT_EQ(seen->maker(), section->maker());
}

TEST_P(SectionContract, LooksDoNotKeepItAlive) {
    auto section = openOrCreate();
    ASSERT_NE(section, nullptr);
    section->view()[0] = std::byte{1};
    const auto first = look();
    const auto second = look();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    section.reset();
    EXPECT_FALSE(first->isOwned());
    EXPECT_FALSE(second->isOwned());
    EXPECT_EQ(look(), nullptr);

    const auto next = openOrCreate();
    ASSERT_NE(next, nullptr);
    EXPECT_FALSE(next->existed());
    EXPECT_TRUE(isZeroed(*next));
}

TEST_P(SectionContract, ALookKeepsTheBytesOfItsOwnSectionWhenTheNextIsThere) {
    auto section = openOrCreate();
    ASSERT_NE(section, nullptr);
    section->view()[kBytes / 2] = std::byte{1};
    const auto old = look();
    ASSERT_NE(old, nullptr);
    section.reset();
    const auto next = openOrCreate();
    ASSERT_NE(next, nullptr);
    next->view()[kBytes / 2] = std::byte{2};
    EXPECT_EQ(old->view()[kBytes / 2], std::byte{1});
    EXPECT_FALSE(old->isOwned());
    const auto seen = look();
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->view()[kBytes / 2], std::byte{2});
    EXPECT_TRUE(seen->isOwned());
}

TEST_P(SectionContract, ASectionIsOwnedWhileItIsWrittenWithoutRest) {
    const auto section = openOrCreate();
    ASSERT_NE(section, nullptr);
    const auto seen = look();
    ASSERT_NE(seen, nullptr);
    std::atomic<bool> stop = false;
    std::thread writer([&] {
        auto* const words = reinterpret_cast<std::uint64_t*>(section->view());
        for (std::uint64_t n = 1; !stop.load(std::memory_order_relaxed); ++n)
            std::atomic_ref(words[n % 16]).store(n, std::memory_order_relaxed);
    });
    for (int i = 0; i < 50; ++i) EXPECT_TRUE(seen->isOwned());
    stop = true;
    writer.join();
}

TEST_P(SectionContract, ASectionOfAnotherSizeIsNotLookedAt) {
    for (const std::size_t bytes : {std::size_t{4096}, kBytes + 4096}) {
        const auto section = openOrCreate(bytes);
        ASSERT_NE(section, nullptr);
        EXPECT_EQ(look(), nullptr) << bytes;
        EXPECT_NE(look(bytes), nullptr) << bytes;
    }
}

TALLOWMERE_CONTRACT(SectionContract);

} // namespace
} // namespace tallowmere::test
