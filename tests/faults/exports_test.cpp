// The eleven functions while a call to the system or a request for memory fails.
#include "tests/channels/raw_section.hpp"
#include "tests/core/core_fixture.hpp"
#include "tests/support/attached_library.hpp"
#include "tests/support/case_count.hpp"
#include "tests/support/counted_memory.hpp"

#include <cstring>

namespace tallowmere::test {
namespace {

constexpr std::uint16_t kUserChannel = 175;

class FailingExports : public CoreTest {
  protected:
    FailingExports() {
        host.put<std::uint64_t>(place::kHostWindow, 0x1234);
        SetZanUserVarName(3, "The old name");
        machine.trace.reserve(1'000);
    }
    static std::string nameOf(std::uint16_t channel) {
        char name[16];
        std::memset(name, 'x', sizeof name);
        GetZanVarName(channel, name);
        EXPECT_EQ(name[15], '\0');
        return name;
    }

    std::unique_ptr<CCore> core = start();
    AttachedLibrary library{*core};
    RawSection host = section();
};

/// SetMOB takes none either: OpeningFailure and HostFailure look, for this machine's window takes some.
TEST_F(FailingExports, AllButTheTwoOfNamesTakeNoMemory) {
    double value = 0;
    ChannelValue record{};
    std::uint16_t source = 0;
    std::uint8_t flag = 0;
    const std::size_t before = allocationsMade();
    failAllocationsFrom(1);
    for (std::uint16_t channel = 0; channel <= 414; ++channel) {
        SetZanVar(channel, 1.0, 0);
        GetZanVar(channel, &value, 0, &source);
        GetZanVar2(channel, &record, 0, &source);
        SetZanVar2(channel, &record, 99);
        GetSysBool(channel, &flag);
        GetSysVar(channel, &value);
    }
    const int boats = GetBoatNum();
    const int channels = GetZanVarNum();
    failAllocation(0);
    EXPECT_EQ(allocationsMade(), before);
    EXPECT_EQ(boats, 100);
    EXPECT_EQ(channels, 414);
    EXPECT_TRUE(machine.trace.empty() || machine.trace.back() != "Narrow");
}

TEST_F(FailingExports, ANameThatFindsNoMemoryIsEmptyOrWhole) {
    CaseCount cases("failing requests for memory");
    for (const std::uint16_t channel : {std::uint16_t{1}, std::uint16_t{33}, kUserChannel}) {
        const std::string whole = nameOf(channel);
        ASSERT_FALSE(whole.empty());
        for (std::size_t n = 1;; ++n) {
            const std::ptrdiff_t held = piecesHeld();
            const std::size_t before = allocationsMade();
            char name[16];
            std::memset(name, 'x', sizeof name);
            failAllocation(n);
            GetZanVarName(channel, name);
            const bool failed = allocationsMade() - before >= n;
            failAllocation(0);
            EXPECT_EQ(piecesHeld(), held);
            const std::string_view all(name, sizeof name);
            if (!failed) break;
            ++cases;
            if (all != std::string(16, '\0')) {
                EXPECT_EQ(std::string(name), whole); // a note of the machine's found no memory, not the name
            }
        }
    }
    EXPECT_GE(cases.count(), 2U);
}

TEST_F(FailingExports, ARenamingThatFindsNoMemoryLeavesBothNames) {
    CaseCount cases("failing requests for memory");
    for (std::size_t n = 1;; ++n) {
        const std::ptrdiff_t held = piecesHeld();
        const std::size_t before = allocationsMade();
        failAllocation(n);
        SetZanUserVarName(3, "A new long name");
        const bool failed = allocationsMade() - before >= n;
        failAllocation(0);
        EXPECT_EQ(piecesHeld(), held);
        if (!failed) break;
        ++cases;
        EXPECT_TRUE(host.text(place::longName(kUserChannel), 32) == u"The old name");
        EXPECT_TRUE(host.text(place::shortName(kUserChannel), 16) == u"The old name");
    }
    EXPECT_TRUE(host.text(place::longName(kUserChannel), 32) == u"A new long name");
    EXPECT_GE(cases.count(), 1U);
}

TEST_F(FailingExports, ATextThatTheSystemCannotConvertIsAnEmptyOne) {
    machine.failOnce(Step::Narrow);
    EXPECT_EQ(nameOf(1), "");
    EXPECT_EQ(nameOf(1), "BSP");
    machine.failOnce(Step::Widen);
    SetZanUserVarName(3, "Another");
    EXPECT_EQ(nameOf(kUserChannel), "User 3"); // as an empty text does: the catalogue's
}

TEST_F(FailingExports, AMessageThatCannotBePostedLeavesTheMark) {
    machine.failOnce(Step::PostToHost);
    EXPECT_EQ(SetMOB(50.5, -1.25), 0);
    EXPECT_EQ(host.get<double>(place::kMobLatitude), 50.5);
    EXPECT_EQ(host.get<double>(place::kMobLongitude), -1.25);
    EXPECT_EQ(host.get<std::uint8_t>(place::kMobFlagA), 1);
    EXPECT_NE(SetMOB(51.5, -2.25), 0);
}

TEST(ExportsWithoutSection, AnswerWithNoValue) {
    MemoryMachine machine;
    MemoryPlatform platform(machine);
    machine.failAlways(Step::CreateSection);
    CCore core(platform, false);
    const AttachedLibrary library(core);
    CaseCount cases("calls");
    for (unsigned each = 0; each <= 415; ++each) {
        const auto index = static_cast<std::uint16_t>(each);
        const bool inRange = each < 414;
        double value = -987.25;
        std::uint16_t source = 4444;
        EXPECT_EQ(GetZanVar(index, &value, 0, &source), 0);
        EXPECT_EQ(value, inRange ? -987.25 : 32767.0);
        EXPECT_EQ(source, inRange ? index : 32767);
        ChannelValue record{};
        EXPECT_EQ(GetZanVar2(index, &record, 0, &source), 0);
        EXPECT_TRUE(record.payload.number == 32767.0 || record.payload.integer == 32767 ||
                    record.payload.ticks == INT64_MAX);
        std::uint8_t flag = 77;
        EXPECT_EQ(GetSysBool(index, &flag), each < 60 ? 1 : 0);
        EXPECT_EQ(flag, each < 60 ? 0 : 77);
        EXPECT_EQ(GetSysVar(index, &value), 0);
        EXPECT_EQ(value, 32767.0);
        SetZanUserVarName(index, "Name");
        char name[16] = "untouched";
        GetZanVarName(index, name);
        EXPECT_EQ(std::string(name) == "untouched", !inRange);
        const bool isProtected = inRange && kCatalogue[each].ownBoatProtected != 0;
        const auto code = static_cast<std::uint8_t>(each - 1);
        const std::uint8_t written = each == 0 || !inRange ? code : isProtected ? 1 : 0;
        EXPECT_EQ(SetZanVar(index, 1.0, 0), written);
        EXPECT_EQ(SetZanVar2(index, &record, 0), written);
        for (int i = 0; i < 8; ++i) ++cases;
    }
    EXPECT_EQ(SetMOB(1.0, 2.0), 0);
    EXPECT_TRUE(machine.posts.empty());
}

} // namespace
} // namespace tallowmere::test
