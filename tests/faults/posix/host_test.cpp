// A host's whole life on the real system, with one call of the system or one request for memory failing: the
// first, the second, and so on. The parser's memory is among it.
#include "core/ccore.hpp"
#include "settings/reg_ex.hpp"
#include "tests/channels/raw_section.hpp"
#include "tests/contract/posix_surroundings.hpp"
#include "tests/faults/posix/failing_calls.hpp"
#include "tests/faults/posix/holdings.hpp"
#include "tests/faults/root_log.hpp"
#include "tests/support/attached_library.hpp"
#include "tests/support/case_count.hpp"
#include "tests/support/counted_memory.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;

/// What is looked at of a life: each is the user's or the default.
struct Seen {
    bool section = false;
    double length = 0;               // system variable 0: 20.5, else 15.85
    int flag = 0;                    // system flag 5: 1, else 0
    int mode = 0;                    // system integer 6: 3, else 5
    std::u16string boat;             // "Falcon", else "Boat 3"
    std::u16string channel;          // "Keel depth", else nothing
    std::int32_t alternate = 0;      // 1, else 32767
    double heading = 0;              // 100 written: 103 with its calibration, else 100
    std::size_t calibrationRows = 0; // 1, else 0
    std::string name;                // of channel 1: "BSP", else nothing
    friend bool operator==(const Seen&, const Seen&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Seen& seen) {
        return out << seen.section << " " << seen.length << " " << seen.flag << " " << seen.mode << " "
                   << fs::path(seen.boat) << " " << fs::path(seen.channel) << " " << seen.alternate << " "
                   << seen.heading << " " << seen.calibrationRows << " " << seen.name;
    }
};

class HostFailure : public ::testing::Test {
  protected:
    HostFailure() {
        errors_ = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        standardError_ = ::dup(STDERR_FILENO);
        renew();
    }
    ~HostFailure() override {
        ::close(errors_);
        ::close(standardError_);
    }

    void renew() {
        surroundings_.writeSettings("[HKCU\\Software\\Tallowmere\\core]\r\n"
                                    "\"Sys_v0\"=hex:00,00,00,00,00,80,34,40\r\n\"Sys_b5\"=dword:1\r\n"
                                    "\"Sys_i6\"=dword:3\r\n"
                                    "[HKCU\\Software\\Tallowmere\\tallowmere\\calibration]\r\n"
                                    "\"CalUse_8\"=dword:00000001\r\n");
        const fs::path data = surroundings_.data() / "Tallowmere";
        for (const char* folder : {"config", "calibration", "database"}) fs::create_directories(data / folder);
        writeBytes(data / "config" / "boats.xml", "<boats><boat id=\"3\" name=\"Falcon\"/></boats>");
        writeBytes(data / "config" / "channels.xml", "<channels><channel id=\"180\" user=\"Keel depth\"/></channels>");
        writeBytes(data / "config" / "alternate.csv", "0,1,2,3,4,5,6,7,8,9\n");
        writeBytes(data / "calibration" / "ZAN_CAL_Hdg.txt", "0\n0 3\n");
    }

    static Seen look(CCore& core) {
        Seen seen;
        seen.calibrationRows = core.calibration().items()[8].table.rows.size();
        seen.section = core.area() != nullptr;
        if (!seen.section) return seen;
        const RawSection raw(reinterpret_cast<std::byte*>(core.area()));
        seen.length = raw.get<double>(place::variable(0));
        seen.flag = raw.get<std::uint8_t>(place::flag(5));
        seen.mode = raw.get<std::int32_t>(place::integer(6));
        seen.boat = raw.text(place::boatName(3), 32);
        seen.channel = raw.text(place::longName(180), 32);
        seen.alternate = raw.get<std::int32_t>(place::alternateCell(0, 0));
        SetZanVar(13, 100.0, 1);
        std::uint16_t source = 0;
        GetZanVar(13, &seen.heading, 1, &source);
        return seen;
    }

    /// One life: made, used through the exported functions, ended.
    Seen live() {
        Seen seen;
        std::unique_ptr<CCore> core(::new CCore(true));
        {
            const AttachedLibrary library(*core);
            char name[16];
            GetZanVarName(1, name);
            SetZanUserVarName(4, "Vane");
            if (core->area() != nullptr) core->area()->hostWindow = 0x1234;
            EXPECT_EQ(SetMOB(1.0, 2.0), 0); // nobody's window
            seen = look(*core);
            seen.name = name;
        }
        core.reset();
        return seen;
    }
    /// The same behind the back of everything that fails.
    std::u16string location() {
        CRegEx key(platform::hostPlatform());
        key.Open(kCoreKey);
        return key.QueryString(u"Location", u"");
    }

    static bool isUsersOrDefault(const Seen& seen) {
        if (seen.calibrationRows > 1) return false;
        if (!seen.section) return true;
        return (seen.length == 20.5 || seen.length == 15.85) && (seen.flag == 1 || seen.flag == 0) &&
               (seen.mode == 3 || seen.mode == 5) && (seen.boat == u"Falcon" || seen.boat == u"Boat 3") &&
               (seen.channel == u"Keel depth" || seen.channel.empty()) &&
               (seen.alternate == 1 || seen.alternate == 32767) && (seen.heading == 103.0 || seen.heading == 100.0) &&
               (seen.name == "BSP" || seen.name.empty());
    }
    void quiet() { ::dup2(errors_, STDERR_FILENO); }
    void loud() { ::dup2(standardError_, STDERR_FILENO); }

    /// After the failure: nothing is left open or mapped, no half-written settings, and the next life is whole.
    void expectNothingLeft(const Holdings& before, const std::string& settings) {
        EXPECT_EQ(holdings(surroundings_.top()), before);
        EXPECT_EQ(platform::hostPlatform().openSection(sectionName(), kSharedAreaBytes), nullptr) << "still alive";
        const std::string now = surroundings_.readSettings();
        EXPECT_TRUE(now.starts_with(settings.substr(0, 100))) << now;
        EXPECT_TRUE(location().empty() || location().ends_with(u"/"));
        EXPECT_EQ(live(), whole_);
        EXPECT_TRUE(location().ends_with(u"/"));
    }

    RootLog log_;
    int errors_ = -1;
    int standardError_ = -1;
    PosixSurroundings surroundings_;
    Seen whole_{true, 20.5, 1, 3, u"Falcon", u"Keel depth", 1, 103.0, 1, "BSP"};
};

TEST_F(HostFailure, WithoutOneALifeHasAllThatTheUserSet) {
    EXPECT_EQ(live(), whole_);
    EXPECT_TRUE(location().ends_with(u"/"));
}

TEST_F(HostFailure, OfACallLeavesTheDocumentedDefault) {
    CaseCount cases("failing calls of the system");
    const std::string settings = surroundings_.readSettings();
    // Not ENOENT: that says that there is no file, which is another matter than a failure.
    for (const int error : {EIO, ENOMEM, EMFILE, ENOSPC, EACCES, EINTR}) {
        for (std::size_t n = 1;; ++n) {
            surroundings_.writeSettings(settings);
            const Holdings before = holdings(surroundings_.top());
            quiet();
            failCall(n, error);
            const Seen seen = live();
            const bool over = endFailing() < n;
            loud();
            if (over) break;
            ++cases;
            SCOPED_TRACE(std::to_string(n) + " " + failedCall() + " " + std::to_string(error));
            EXPECT_TRUE(isUsersOrDefault(seen));
            expectNothingLeft(before, settings);
        }
    }
    EXPECT_GT(cases.count(), 500U);
}

TEST_F(HostFailure, TransfersOfOneByteAtATimeCarryAll) {
    shortenTransfers();
    const Seen seen = live();
    endFailing();
    EXPECT_EQ(seen, whole_);
    EXPECT_TRUE(location().ends_with(u"/"));
}

TEST_F(HostFailure, OfARequestForMemoryLeavesTheDocumentedDefault) {
    CaseCount cases("failing requests for memory");
    const std::string settings = surroundings_.readSettings();
    for (std::size_t n = 2;; ++n) { // the first is the object itself
        SCOPED_TRACE(n);
        surroundings_.writeSettings(settings);
        const Holdings before = holdings(surroundings_.top());
        const std::ptrdiff_t held = piecesHeld();
        quiet();
        const std::size_t requests = allocationsMade();
        failAllocation(n);
        bool good = true;
        try {
            good = isUsersOrDefault(live());
        } catch (const std::bad_alloc&) { // what this test itself notes found no room
        }
        const bool over = allocationsMade() - requests < n;
        failAllocation(0);
        loud();
        EXPECT_EQ(piecesHeld(), held);
        if (over) break;
        ++cases;
        EXPECT_TRUE(good);
        expectNothingLeft(before, settings);
    }
    EXPECT_GT(cases.count(), 300U);
}

} // namespace
} // namespace tallowmere::test
