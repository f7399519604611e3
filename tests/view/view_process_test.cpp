// A program that only looks, and others that come and go. Run for each platform with that platform's clients.
#include "client_process.hpp"
#include "platform/platform.hpp"

#include <tallowmere/channels.h>
#include <tallowmere/view.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace tallowmere::test {
namespace {

using view::State;
using view::View;

constexpr char16_t kName[] = u"ZanCore_363_253336";
constexpr std::size_t kBytes = 253336;

bool sectionIsThere() {
    return platform::hostPlatform().lookAtSection(kName, kBytes) != nullptr;
}

TEST(ViewAmongProcesses, MakesNoSection) {
    View view;
    EXPECT_EQ(view.state(), State::NoSection);
    EXPECT_EQ(view.refreshNow(), State::NoSection);
    EXPECT_EQ(view.channel(ZAN_BSP)->name(), "BSP");
    EXPECT_EQ(view.read(ZAN_BSP).number(), std::nullopt);
    EXPECT_FALSE(platform::hostPlatform().openSection(kName, kBytes));
}

TEST(ViewAmongProcesses, SeesAWriterComeGoAndComeAgain) {
    View view;
    auto writer = std::make_unique<ReadyClient>();
    EXPECT_EQ(view.refreshNow(), State::Attached);
    EXPECT_EQ(writer->ask("set 1 6.5 0"), "1");
    EXPECT_EQ(view.read(ZAN_BSP).number(), 6.5);
    EXPECT_EQ(static_cast<int>(writer->finish()), 0);
    EXPECT_EQ(view.refreshNow(), State::WritersGone);
    EXPECT_EQ(view.read(ZAN_BSP).number(), std::nullopt);
    EXPECT_FALSE(sectionIsThere());

    writer = std::make_unique<ReadyClient>();
    EXPECT_EQ(view.refreshNow(), State::Attached);
    EXPECT_EQ(view.generation(), 2U);
    EXPECT_EQ(view.read(ZAN_BSP).number(), std::nullopt);
    EXPECT_EQ(writer->ask("set 1 7.5 0"), "1");
    EXPECT_EQ(view.read(ZAN_BSP).number(), 7.5);
}

TEST(ViewAmongProcesses, SeesThatTheLastWriterWasKilled) {
    View view;
    ReadyClient one;
    ReadyClient other;
    EXPECT_EQ(other.ask("set 1 6.5 0"), "1");
    EXPECT_EQ(view.refreshNow(), State::Attached);
    one.kill();
    EXPECT_EQ(view.refreshNow(), State::Attached);
    EXPECT_EQ(view.read(ZAN_BSP).number(), 6.5);
    other.kill();
    EXPECT_EQ(view.refreshNow(), State::WritersGone);
}

TEST(ViewAmongProcesses, ViewsDoNotKeepASectionAlive) {
    View one;
    View other;
    {
        ReadyClient writer;
        EXPECT_EQ(writer.ask("set 1 6.5 0"), "1");
        EXPECT_EQ(one.refreshNow(), State::Attached);
        EXPECT_EQ(other.refreshNow(), State::Attached);
        EXPECT_EQ(static_cast<int>(writer.finish()), 0);
    }
    // Nobody has refreshed. The next program makes a section of its own all the same.
    ReadyClient next;
    EXPECT_EQ(next.ask("get 1 0").find("6.5"), std::string::npos);
    EXPECT_EQ(one.read(ZAN_BSP).number(), 6.5); // still mapped, as it was last
    EXPECT_EQ(one.refreshNow(), State::Attached);
    EXPECT_EQ(one.generation(), 2U);
    EXPECT_EQ(one.read(ZAN_BSP).number(), std::nullopt);
    EXPECT_EQ(other.refreshNow(), State::Attached);
    EXPECT_EQ(other.generation(), 2U);
}

TEST(ViewAmongProcesses, ManyComingsAndGoingsLeaveItWhole) {
    View view;
    for (unsigned round = 1; round <= 5; ++round) {
        ReadyClient writer;
        EXPECT_EQ(writer.ask("set 1 6.5 0"), "1");
        EXPECT_EQ(view.refreshNow(), State::Attached);
        EXPECT_EQ(view.generation(), round);
        EXPECT_EQ(view.read(ZAN_BSP).number(), 6.5);
        if (round % 2 == 0) writer.kill();
    }
}

} // namespace
} // namespace tallowmere::test
