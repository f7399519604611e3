// Starts and ends of a host and a client, with one call to the system or one request for memory failing: the
// first, the second, and so on until nothing is left to fail. Whatever fails, both objects are there and work,
// what is seen is as the user set it or as it is without the user's settings, and one failure costs no more than
// what it was needed for.
#include "tests/faults/life.hpp"
#include "tests/support/case_count.hpp"
#include "tests/support/counted_memory.hpp"

#include "core/channels/mob_mark.hpp"
#include "core/config/alternate_table.hpp"
#include "settings/track_settings.hpp"

namespace tallowmere::test {
namespace {

using Groups = std::map<std::string, int>;

/// Of many points each, or each of these many where starts are slow.
constexpr std::size_t kStride = TALLOWMERE_STRIDE;
/// After every one or so many of them it is looked whether the next start is whole.
constexpr std::size_t kRestarts = TALLOWMERE_RESTARTS;
static_assert(kStride == 1 || kRestarts == 1);

class EveryFailure : public ::testing::Test {
  protected:
    static Outcome outcomeOf(bool withUser) {
        Life life(withUser);
        life.attach();
        return life.seen();
    }
    static Outcome outcomeWithoutSection() {
        Life life(true);
        life.machine.failAlways(Step::MapSection);
        life.attach();
        return life.seen();
    }
    /// The user has moved the data folder and set nothing else, and the host can't tell where it lies itself.
    static Outcome outcomeOfFolderAlone() {
        Life life(true);
        life.machine.settings.clear();
        life.machine.addString(kCoreSettings, u"DataFolder", u"D:\\Race");
        life.machine.failAlways(Step::HostExecutable);
        life.attach();
        return life.seen();
    }

    /// A core object without a section answers that there is nothing.
    static void expectNoData(CCore& core) {
        EXPECT_TRUE(core.setupDone());
        EXPECT_FALSE(core.madeSection());
        EXPECT_FALSE(core.values().store(1, Record::ofNumber(6.4), 0, INT64_MAX));
        EXPECT_EQ(core.values().fetch(1, 0).record, Record::ofNumber(32767.0));
        EXPECT_EQ(core.system().variable(0), 32767.0);
        EXPECT_EQ(core.system().flag(0), 0);
        EXPECT_EQ(raiseManOverboard(core.context(), 1.0, 2.0), 0);
        EXPECT_EQ(resolveAlternating(core.values(), 117), 117);
    }
    static void expectWorks(CCore& core) {
        EXPECT_TRUE(core.setupDone());
        EXPECT_TRUE(core.values().store(17, Record::ofNumber(6.5), 0, INT64_MAX)); // a depth, in use by nobody
        EXPECT_EQ(core.values().fetch(17, 0).record, Record::ofNumber(6.5));
    }

    /// What one failure during the start may leave. The failures of the section itself are each shown once.
    void expectDocumentedStart(const Life& life) {
        const Outcome seen = life.seen();
        expectOnlyUsersOrDefault(seen);
        int without = 0;
        for (CCore* core : {life.host.get(), life.client.get()}) {
            if (core->area() == nullptr)
                expectNoData(*core);
            else
                expectWorks(*core);
            without += core->area() == nullptr ? 1 : 0;
        }
        EXPECT_LE(without, 1);
        EXPECT_EQ(life.machine.errorsShown.size(), static_cast<std::size_t>(without));
        EXPECT_EQ(life.machine.quitsPosted, without);
        if (life.host->area() == nullptr) return;

        Groups lost = unlike(seen, users_);
        if (dataFolderOf(seen) != dataFolderOf(users_)) {
            // Another data folder, in which there are no files.
            const Groups unlikeBare = unlike(seen, bare_);
            for (const char* group : {"boats", "channels", "alternate"}) {
                EXPECT_FALSE(unlikeBare.contains(group)) << group;
                lost.erase(group);
            }
            lost.erase("calibration");
        }
        if (lost.contains("settings")) lost.erase("blocked"); // follows flags
        EXPECT_LE(lost.size(), 1U) << ::testing::PrintToString(lost);
        const bool allSettings = lost["settings"] == unlike(bare_, users_).at("settings"); // the key itself
        EXPECT_TRUE(lost["settings"] <= 1 || allSettings) << lost["settings"];
    }

    /// The failure, the n-th of many, is over.
    void expectNextStartIsWhole(Life& life, std::size_t n = 0) {
        if (n % kRestarts != 0) return;
        life.attach();
        EXPECT_EQ(unlike(life.seen(), users_), Groups{});
    }

    void expectOnlyUsersOrDefault(const Outcome& seen) {
        EXPECT_EQ(entriesOfNone(seen, {&users_, &bare_, &blind_, &moved_}), "");
    }

    const Outcome users_ = outcomeOf(true);
    const Outcome bare_ = outcomeOf(false);
    const Outcome blind_ = outcomeWithoutSection();
    const Outcome moved_ = outcomeOfFolderAlone();
};

TEST_F(EveryFailure, TheTwoMachinesDifferInEveryGroup) {
    const Groups groups = unlike(users_, bare_);
    for (const char* group : {"alternate", "blocked", "boats", "calibration", "channels", "settings"})
        EXPECT_TRUE(groups.contains(group)) << group;
    EXPECT_GT(groups.at("settings"), 50);
}

TEST_F(EveryFailure, OfACallDuringTheStartLeavesTheDocumentedDefault) {
    CaseCount cases("failing calls");
    for (int n = 1;; ++n) {
        Life life(true);
        life.machine.failAnyOnce(n);
        life.attach();
        if (life.machine.requests() < n) break;
        ++cases;
        SCOPED_TRACE(std::to_string(n) + " " + life.machine.trace[static_cast<std::size_t>(n - 1)]);
        expectDocumentedStart(life);
        life.detach();
        EXPECT_EQ(life.machine.section(kSectionName), nullptr);
        expectNextStartIsWhole(life);
    }
    EXPECT_GT(cases.count(), 200U);
}

TEST_F(EveryFailure, OfARequestForMemoryDuringTheStartLeavesTheDocumentedDefault) {
    CaseCount cases("failing requests for memory");
    for (std::size_t n = 1;; n += kStride) {
        SCOPED_TRACE(n);
        const std::ptrdiff_t held = piecesHeld();
        {
            Life life(true);
            failAllocation(n);
            const std::size_t before = allocationsMade();
            try {
                life.attach();
            } catch (const std::bad_alloc&) {
                failAllocation(0); // the object itself found no room: no constructor has thrown
                life.detach();
                expectNextStartIsWhole(life, n);
                continue;
            }
            const bool failed = allocationsMade() - before >= n;
            failAllocation(0);
            if (!failed) break;
            ++cases;
            expectDocumentedStart(life);
            life.detach();
            EXPECT_EQ(life.machine.section(kSectionName), nullptr);
            expectNextStartIsWhole(life, n);
        }
        EXPECT_EQ(piecesHeld(), held);
    }
    EXPECT_GT(cases.count(), 300U / kStride);
}

/// From some point on there is no memory at all: what was done until then stays, the rest keeps its default.
TEST_F(EveryFailure, OfAllMemoryFromSomePointOnLeavesTheDocumentedDefault) {
    CaseCount cases("points from which on there is no memory");
    for (std::size_t n = 1;; n += kStride) {
        SCOPED_TRACE(n);
        const std::ptrdiff_t held = piecesHeld();
        {
            Life life(true);
            void* const room =
                ::operator new(sizeof(CCore)); // where the object is, as in the library, there from the start
            failAllocationsFrom(n);
            const std::size_t before = allocationsMade();
            life.host.reset(::new (room) CCore(life.platform, true));
            const bool failed = allocationsMade() - before >= n;
            failAllocation(0);
            if (!failed) break;
            ++cases;
            expectOnlyUsersOrDefault(life.seen());
            if (life.host->area() == nullptr) expectNoData(*life.host);
            EXPECT_EQ(life.machine.quitsPosted, life.host->area() == nullptr ? 1 : 0);
            failAllocationsFrom(1);
            life.host.reset();
            failAllocation(0);
            expectNextStartIsWhole(life, n);
        }
        EXPECT_EQ(piecesHeld(), held);
    }
    EXPECT_GT(cases.count(), 300U / kStride);
}

/// The notices of a start without a section: each is given whether or not another one fails.
TEST_F(EveryFailure, BesidesTheSectionsLeavesTheOtherNotices) {
    CaseCount cases("second failures");
    for (const Step section : {Step::CreateSection, Step::MapSection}) {
        for (int n = 1;; ++n) {
            Life life(true);
            life.machine.failAlways(section);
            life.machine.failAnyOnce(n);
            life.host = std::make_unique<CCore>(life.platform, false);
            if (life.machine.requests() < n) break;
            ++cases;
            const std::string step = life.machine.trace[static_cast<std::size_t>(n - 1)];
            SCOPED_TRACE(step);
            expectNoData(*life.host);
            EXPECT_EQ(life.machine.errorsShown.size(), step == "ShowError" ? 0U : 1U);
            EXPECT_EQ(life.machine.quitsPosted, step == "PostQuit" ? 0 : 1);
            EXPECT_EQ(life.machine.files.contains(u"\\log_system_22Nov2025.log"), step != "AppendLine");
            life.detach();
            life.machine.failNever();
            expectNextStartIsWhole(life);
        }
        for (std::size_t n = 1;; ++n) {
            SCOPED_TRACE(n);
            Life life(true);
            life.machine.failAlways(section);
            auto room = ::operator new(sizeof(CCore));
            failAllocation(n);
            const std::size_t before = allocationsMade();
            life.host.reset(::new (room) CCore(life.platform, false));
            const bool failed = allocationsMade() - before >= n;
            failAllocation(0);
            if (!failed) break;
            ++cases;
            expectNoData(*life.host);
            EXPECT_EQ(life.machine.quitsPosted, 1); // asked for in any case
            life.detach();
            life.machine.failNever();
            expectNextStartIsWhole(life, n);
        }
    }
    EXPECT_GT(cases.count(), 20U);
}

// --- the end

std::unique_ptr<TrackSettings> usersTracks(MemoryPlatform& platform) {
    auto tracks = std::make_unique<TrackSettings>(platform);
    tracks->trackWidth = 7;
    tracks->limitMinutes = 77;
    tracks->trackMin = 3;
    tracks->tracks[5].points.resize(100);
    return tracks;
}

/// A life whose settings were saved before, so that there is something that a failure can leave.
void liveOnce(Life& life) {
    life.attach();
    life.host->setTrackSettings(std::make_unique<TrackSettings>(life.platform));
    life.detach();
}

class EveryFailureAtTheEnd : public ::testing::Test {
  protected:
    EveryFailureAtTheEnd() {
        Life life(true);
        liveOnce(life);
        before_ = life.saved();
        life.attach();
        started_ = life.seen();
        life.host->setTrackSettings(usersTracks(life.platform));
        life.detach();
        after_ = life.saved();
    }
    /// The failure is over: a host starts whole and can save its settings.
    void expectNextLifeIsWhole(Life& life) {
        life.attach();
        EXPECT_EQ(unlike(life.seen(), started_), Groups{});
        life.host->setTrackSettings(usersTracks(life.platform));
        life.detach();
        EXPECT_EQ(life.saved().others, after_.others);
    }
    Outcome before_;
    Outcome started_;
    Outcome after_;
};

TEST_F(EveryFailureAtTheEnd, OfACallLeavesOneTrackSettingAsItWas) {
    ASSERT_NE(before_.others, after_.others);
    ASSERT_EQ(after_.others.size(), 12U);
    CaseCount cases("failing calls");
    for (int n = 1;; ++n) {
        Life life(true);
        liveOnce(life);
        life.attach();
        life.host->setTrackSettings(usersTracks(life.platform));
        life.machine.trace.clear();
        life.machine.failAnyOnce(n);
        life.detach();
        if (life.machine.requests() < n) break;
        ++cases;
        const Outcome saved = life.saved();
        EXPECT_EQ(entriesOfNone(saved, {&after_, &before_}), "");
        int kept = 0;
        for (const auto& [name, value] : after_.others) kept += saved.others.at(name) == value ? 0 : 1;
        EXPECT_LE(kept, life.machine.trace[static_cast<std::size_t>(n - 1)] == "CreateSettings" ? 12 : 1);
        EXPECT_EQ(life.machine.section(kSectionName), nullptr);
        EXPECT_TRUE(life.machine.errorsShown.empty());
        expectNextLifeIsWhole(life);
    }
    EXPECT_EQ(cases.count(), 13U);
}

TEST_F(EveryFailureAtTheEnd, OfARequestForMemoryLeavesTrackSettingsAsTheyWere) {
    CaseCount cases("failing requests for memory");
    for (std::size_t n = 1;; ++n) {
        SCOPED_TRACE(n);
        const std::ptrdiff_t held = piecesHeld();
        {
            Life life(true);
            liveOnce(life);
            life.attach();
            life.host->setTrackSettings(usersTracks(life.platform));
            failAllocation(n);
            const std::size_t before = allocationsMade();
            life.detach();
            const bool failed = allocationsMade() - before >= n;
            failAllocation(0);
            if (!failed) break;
            ++cases;
            EXPECT_EQ(entriesOfNone(life.saved(), {&after_, &before_}), "");
            EXPECT_EQ(life.machine.section(kSectionName), nullptr);
            expectNextLifeIsWhole(life);
        }
        EXPECT_EQ(piecesHeld(), held);
    }
    EXPECT_GT(cases.count(), 10U);
}

} // namespace
} // namespace tallowmere::test
