// The end of a core object.
#include "tests/core/core_fixture.hpp"

#include <atomic>
#include <thread>

namespace tallowmere::test {
namespace {

class CoreDestruction : public CoreTest {
  protected:
    [[nodiscard]] std::uint32_t saved(const std::u16string& name) const {
        const auto key = machine.settings.find(kTrackSettings);
        if (key == machine.settings.end() || key->second.count(name) == 0) return 0xDEADBEEF;
        const MemoryValue& value = key->second.at(name);
        EXPECT_EQ(value.type, platform::SettingsType::Dword);
        EXPECT_EQ(value.bytes.size(), 4U);
        std::uint32_t number = 0;
        std::memcpy(&number, value.bytes.data(), std::min<std::size_t>(4, value.bytes.size()));
        return number;
    }
};

TEST_F(CoreDestruction, WithAnIdleWorkerTakesNoSleep) {
    start().reset();
    EXPECT_TRUE(machine.sleeps.empty());
}

TEST_F(CoreDestruction, WithAStuckWorkerSleepsFiveTimesAndGoesOn) {
    auto core = start();
    core->setWorkerBusy(true);
    core->setTrackSettings(std::make_unique<TrackSettings>(platform));
    core.reset();
    EXPECT_THAT(machine.sleeps, ::testing::ElementsAre(50U, 50U, 50U, 50U, 50U));
    EXPECT_FALSE(sectionLives());
    EXPECT_EQ(machine.settings.count(kTrackSettings), 1U);
}

TEST_F(CoreDestruction, EndsItsWaitAsSoonAsTheWorkerIsDone) {
    CCore* core = start().release(); // looked at while it is being destroyed
    core->setWorkerBusy(true);
    machine.onSleep = [&, waited = 0](unsigned) mutable {
        EXPECT_TRUE(core->stopRequested());
        EXPECT_TRUE(sectionLives()); // let go after the wait only
        if (++waited == 2) core->setWorkerBusy(false);
    };
    delete core;
    EXPECT_THAT(machine.sleeps, ::testing::ElementsAre(50U, 50U));
    EXPECT_FALSE(sectionLives());
}

TEST_F(CoreDestruction, ComesAfterAllThatAWorkerOnItsOwnThreadDid) {
    auto core = start();
    int work = 0; // plain: ordered by the worker's last word to the core object alone
    std::atomic<bool> done = false;
    core->setWorkerBusy(true);
    std::thread worker([&work, &done, worked = core.get()] {
        if (worked->stopRequested()) work = 1;
        worked->setWorkerBusy(false);
        done.store(true, std::memory_order_relaxed);
    });
    machine.onSleep = [&](unsigned) {
        while (!done.load(std::memory_order_relaxed)) std::this_thread::yield();
    };
    core.reset();
    EXPECT_EQ(work, 1);
    EXPECT_LE(machine.sleeps.size(), 1U);
    worker.join();
}

TEST_F(CoreDestruction, StopIsRequestedFromTheBeginning) {
    const auto core = start();
    EXPECT_TRUE(core->stopRequested());
}

TEST_F(CoreDestruction, WithoutATrackStoreWritesNothing) {
    auto core = start();
    core->values().store(1, Record::ofNumber(6.4), 0, INT64_MAX);
    EXPECT_EQ(core->trackSettings(), nullptr); // never made by the library
    const auto files = machine.files;
    machine.trace.clear();
    core.reset();
    EXPECT_TRUE(machine.trace.empty());
    EXPECT_TRUE(machine.settings.empty());
    EXPECT_EQ(machine.files.size(), files.size());
}

TEST_F(CoreDestruction, SavesTheTrackSettings) {
    auto core = start();
    auto tracks = std::make_unique<TrackSettings>(platform);
    tracks->trackColour = 3;
    tracks->trackColourRgb = 0xFF8000;
    tracks->trackMin = -5;
    tracks->trackMax = 20;
    tracks->trackWidth = 2;
    tracks->showTrack = true;
    tracks->showWinds = true;
    tracks->limitMinutes = 90;
    core->setTrackSettings(std::move(tracks));
    core.reset();
    EXPECT_EQ(saved(u"TrackColour"), 3U);
    EXPECT_EQ(saved(u"TrackColourRGB"), 0xFF8000U);
    EXPECT_EQ(saved(u"TrackMin"), 0xFFFFFFFBU);
    EXPECT_EQ(saved(u"TrackMax"), 20U);
    EXPECT_EQ(saved(u"TrackWidth"), 2U);
    EXPECT_EQ(saved(u"LimitTrackMinutes"), 90U);
    EXPECT_EQ(saved(u"bTrack"), 1U);
    EXPECT_EQ(saved(u"bTrackOtherBoat"), 0U);
    EXPECT_EQ(saved(u"bTrackDepths"), 0U);
    EXPECT_EQ(saved(u"bTrackWinds"), 1U);
    EXPECT_EQ(saved(u"bTrackCurrents"), 0U);
    EXPECT_EQ(saved(u"bLimitTrack"), 0U);
    EXPECT_EQ(machine.settings[kTrackSettings].size(), 12U);
}

TEST_F(CoreDestruction, WhenSavingFailsGoesOn) {
    for (Step broken : {Step::CreateSettings, Step::WriteValue}) {
        auto core = start();
        core->setTrackSettings(std::make_unique<TrackSettings>(platform));
        machine.failAlways(broken);
        core.reset();
        EXPECT_FALSE(sectionLives());
    }
}

TEST_F(CoreDestruction, AfterAFailedStartIsQuiet) {
    machine.failAlways(Step::MapSection);
    auto core = start();
    const auto shown = machine.errorsShown.size();
    core.reset();
    EXPECT_EQ(machine.errorsShown.size(), shown);
    EXPECT_TRUE(machine.sleeps.empty());
}

} // namespace
} // namespace tallowmere::test
