// A host's whole life on the real system while a request for memory fails that this program makes itself: the
// library's own code above the system's functions.
#include "core/ccore.hpp"
#include "settings/reg_ex.hpp"
#include "tests/channels/raw_section.hpp"
#include "tests/support/attached_library.hpp"
#include "tests/support/case_count.hpp"
#include "tests/support/counted_memory.hpp"
#include "tests/support/host_machine.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>

namespace tallowmere::test {
namespace {

class HostMemory : public ::testing::Test {
  protected:
    HostMemory() {
        const double length = 20.5;
        machine.set(kCoreKey, u"Sys_v0", 3, std::string(reinterpret_cast<const char*>(&length), 8));
        machine.set(kCoreKey, u"Sys_b5", 4, std::string("\1\0\0\0", 4));
        machine.set(kCalibrationKey, u"CalUse_8", 4, std::string("\1\0\0\0", 4));
        const auto write = [&](const char* file, const char* content) {
            std::ofstream(machine.folder() / file, std::ios::binary) << content;
        };
        write("config/boats.xml", "<boats><boat id=\"3\" name=\"Falcon\"/></boats>");
        write("config/channels.xml", "<channels><channel id=\"180\" user=\"Keel depth\"/></channels>");
        write("config/alternate.csv", "0,1,2,3,4,5,6,7,8,9\n");
        write("calibration/ZAN_CAL_Hdg.txt", "0\n0 3\n");
    }

    /// Requests until the section is there. Those may not fail here: the failure would be shown in a box that
    /// waits for the user.
    static std::size_t requestsForSection() {
        const std::size_t before = allocationsMade();
        const auto section = platform::hostPlatform().openOrCreateSection(sectionName(), kSharedAreaBytes);
        EXPECT_NE(section, nullptr);
        return allocationsMade() - before;
    }

    static void expectUsersOrDefault(CCore& core) {
        ASSERT_NE(core.area(), nullptr);
        const RawSection raw(reinterpret_cast<std::byte*>(core.area()));
        const auto length = raw.get<double>(place::variable(0));
        EXPECT_TRUE(length == 20.5 || length == 15.85) << length;
        EXPECT_LE(raw.get<std::uint8_t>(place::flag(5)), 1);
        EXPECT_EQ(raw.get<std::int32_t>(place::integer(4)), 1);
        const std::u16string boat = raw.text(place::boatName(3), 32);
        EXPECT_TRUE(boat == u"Falcon" || boat == u"Boat 3" || boat.empty());
        const std::u16string channel = raw.text(place::longName(180), 32);
        EXPECT_TRUE(channel == u"Keel depth" || channel.empty());
        const auto cell = raw.get<std::int32_t>(place::alternateCell(0, 0));
        EXPECT_TRUE(cell == 1 || cell == 32767) << cell;
        core.values().store(13, Record::ofNumber(100.0), 1, kNoTime);
        const double heading = core.values().fetch(13, 1).record.number();
        EXPECT_TRUE(heading == 103.0 || heading == 100.0) << heading;
    }

    /// The failure is over. Where starts are slow, after some of them.
    static void expectNextStartIsWhole(std::size_t nth) {
        if (nth % TALLOWMERE_STRIDE != 0) return;
        CCore core(true);
        ASSERT_NE(core.area(), nullptr);
        const RawSection raw(reinterpret_cast<std::byte*>(core.area()));
        EXPECT_EQ(raw.get<double>(place::variable(0)), 20.5);
        EXPECT_EQ(raw.get<std::uint8_t>(place::flag(5)), 1);
        EXPECT_TRUE(raw.text(place::boatName(3), 32) == u"Falcon");
        EXPECT_TRUE(raw.text(place::longName(180), 32) == u"Keel depth");
        EXPECT_EQ(raw.get<std::int32_t>(place::alternateCell(0, 0)), 1);
        core.values().store(13, Record::ofNumber(100.0), 1, kNoTime);
        EXPECT_EQ(core.values().fetch(13, 1).record.number(), 103.0);
    }

    static void useNames(CCore& core) {
        const AttachedLibrary library(core);
        char name[16];
        GetZanVarName(1, name);
        SetZanUserVarName(4, "Vane");
        EXPECT_TRUE(std::strcmp(name, "BSP") == 0 || name[0] == '\0');
    }

    HostMachine machine;
};

TEST_F(HostMemory, AFailingRequestLeavesTheDocumentedDefault) {
    CaseCount cases("failing requests for memory");
    const std::size_t forSection = requestsForSection();
    for (std::size_t n = forSection + 1;; ++n) {
        SCOPED_TRACE(n);
        void* const room = ::operator new(sizeof(CCore));
        const std::ptrdiff_t held = piecesHeld();
        const std::size_t before = allocationsMade();
        failAllocation(n);
        std::unique_ptr<CCore> core(::new (room) CCore(true));
        useNames(*core);
        const bool over = allocationsMade() - before < n;
        failAllocation(0);
        expectUsersOrDefault(*core);
        EXPECT_TRUE(machine.holdsSection());
        core.reset();
        EXPECT_EQ(piecesHeld(), held - 1); // the room too
        EXPECT_FALSE(machine.holdsSection());
        expectNextStartIsWhole(n - forSection);
        if (over) break;
        ++cases;
    }
    EXPECT_GT(cases.count(), 100U);
}

TEST_F(HostMemory, NoneAtAllFromSomePointOnLeavesTheDocumentedDefault) {
    CaseCount cases("points from which on there is no memory");
    const std::size_t forSection = requestsForSection();
    for (std::size_t n = forSection + 1;; n += TALLOWMERE_STRIDE) {
        SCOPED_TRACE(n);
        void* const room = ::operator new(sizeof(CCore));
        const std::ptrdiff_t held = piecesHeld();
        const std::size_t before = allocationsMade();
        failAllocationsFrom(n);
        std::unique_ptr<CCore> core(::new (room) CCore(true));
        useNames(*core);
        const bool over = allocationsMade() - before < n;
        failAllocation(0);
        expectUsersOrDefault(*core);
        EXPECT_TRUE(machine.holdsSection());
        failAllocationsFrom(1);
        core.reset();
        failAllocation(0);
        EXPECT_EQ(piecesHeld(), held - 1);
        EXPECT_FALSE(machine.holdsSection());
        expectNextStartIsWhole(n - forSection);
        if (over) break;
        ++cases;
    }
    EXPECT_GT(cases.count(), 100U / TALLOWMERE_STRIDE);
}

} // namespace
} // namespace tallowmere::test
