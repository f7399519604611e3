#include "log/system_log.hpp"
#include "tests/support/new_section.hpp"

#include <limits>

namespace tallowmere::test {
namespace {

constexpr std::int64_t kMinute = 600'000'000;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;
constexpr std::int64_t kMidnight = 134'081'568'000'000'000; // 2025-11-21 00:00:00 UTC
constexpr char16_t kFolder[] = u"C:\\ProgramData\\Tallowmere\\log_system";

class SystemLog : public NewSection {
  protected:
    void SetUp() override { machine.now = kMidnight; }
    void log(const std::u16string& message) { WriteSystemLog(context, message); }
    /// The text of a file; empty when there is none.
    std::string fileAt(const std::u16string& path) {
        const auto found = machine.files.find(path);
        return found != machine.files.end() ? found->second.value_or("(folder)") : "";
    }
    std::string fileOf(const std::u16string& day) {
        return fileAt(std::u16string(kFolder) + u"\\log_system_" + day + u".log");
    }
    void setZone(int bias, int daylightBias = 0, bool daylight = false) {
        machine.zone = platform::TimeZone{bias, daylightBias, daylight};
    }
};

TEST_F(SystemLog, MessageIsShownAndAppendedWithItsTime) {
    machine.now = kMidnight + 14 * kHour + 3 * kMinute + 27 * (kMinute / 60);
    log(u"Unable to map shared memory");
    EXPECT_EQ(machine.errorsShown, std::vector<std::u16string>{u"Unable to map shared memory"});
    EXPECT_EQ(fileOf(u"21Nov2025"), "14:03:27 : Unable to map shared memory\r\n");
}

TEST_F(SystemLog, MessageIsShownBeforeTheTimeIsTaken) {
    log(u"First");
    const auto shown = std::find(machine.trace.begin(), machine.trace.end(), "ShowError");
    EXPECT_EQ(shown, machine.trace.begin());
    EXPECT_EQ(machine.trace.back(), "AppendLine");
    EXPECT_EQ(std::count(machine.trace.begin(), machine.trace.end(), "AppendLine"), 1);
}

TEST_F(SystemLog, EmptyMessageWritesTheTimeAlone) {
    log(u"");
    EXPECT_EQ(fileOf(u"21Nov2025"), "00:00:00 : \r\n");
}

// KEPT: the time is UTC, the date local.
TEST_F(SystemLog, LocalDayNamesTheFileAndUtcTimesTheLine) {
    setZone(-60);                           // one hour east
    machine.now = kMidnight - 90 * kMinute; // 23:30 local time on the 20th
    log(u"Late");
    EXPECT_EQ(fileOf(u"20Nov2025"), "22:30:00 : Late\r\n");
    machine.now = kMidnight - 30 * kMinute; // 00:30 local time on the 21st
    log(u"Early");
    EXPECT_EQ(fileOf(u"21Nov2025"), "23:30:00 : Early\r\n");
}

TEST_F(SystemLog, ClearFlagNamesTheFileByUtc) {
    setZone(-60);
    system.setFlag(1, 0);
    machine.now = kMidnight - 30 * kMinute;
    log(u"Early");
    EXPECT_EQ(fileOf(u"20Nov2025"), "23:30:00 : Early\r\n");
}

TEST_F(SystemLog, WithoutSectionTheFileLiesInTheRootByUtc) {
    setZone(-60);
    machine.now = kMidnight - 30 * kMinute;
    WriteSystemLog(withoutSection, u"Unable to create shared memory map");
    EXPECT_EQ(fileAt(u"\\log_system_20Nov2025.log"), "23:30:00 : Unable to create shared memory map\r\n");
    EXPECT_FALSE(machine.files.contains(kFolder));
    EXPECT_FALSE(machine.files.contains(u"C:\\ProgramData\\Tallowmere"));
}

TEST_F(SystemLog, MessagesOfOneDayShareAFileAndTheNextDayHasItsOwn) {
    log(u"One");
    machine.now += kHour;
    log(u"Two");
    machine.now = kMidnight + kDay;
    log(u"Three");
    EXPECT_EQ(fileOf(u"21Nov2025"), "00:00:00 : One\r\n01:00:00 : Two\r\n");
    EXPECT_EQ(fileOf(u"22Nov2025"), "00:00:00 : Three\r\n");
}

TEST_F(SystemLog, DeletedFileIsMadeAgain) {
    log(u"One");
    machine.files.erase(std::u16string(kFolder) + u"\\log_system_21Nov2025.log");
    log(u"Two");
    EXPECT_EQ(fileOf(u"21Nov2025"), "00:00:00 : Two\r\n");
}

TEST_F(SystemLog, FileThatCannotBeOpenedLosesTheLineOnly) {
    machine.failOnce(Step::AppendLine);
    log(u"Lost");
    EXPECT_EQ(machine.errorsShown.size(), 1u);
    EXPECT_EQ(fileOf(u"21Nov2025"), "");
    EXPECT_EQ(machine.quitsPosted, 0);
    log(u"Kept");
    EXPECT_EQ(machine.errorsShown.size(), 2u);
    EXPECT_EQ(fileOf(u"21Nov2025"), "00:00:00 : Kept\r\n");
}

TEST_F(SystemLog, EveryFailingStepIsSilent) {
    for (int nth = 1; nth <= 10; ++nth) {
        machine.failAnyOnce(nth);
        log(u"Message");
        EXPECT_EQ(machine.errorsShown.size(), static_cast<std::size_t>(nth == 1 ? 0 : nth - 1)) << nth;
    }
}

TEST_F(SystemLog, ClockBeyondTheCalendarLosesTheLineOnly) {
    for (const std::int64_t now :
         {std::int64_t{0}, std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        machine.now = now;
        log(u"Message");
    }
    EXPECT_EQ(machine.errorsShown.size(), 3u);
}

TEST_F(SystemLog, MessageLeavesInTheNarrowCharacterSet) {
    log(u"\u00C6gir \u2693 \U0001F6A9");
    EXPECT_EQ(fileOf(u"21Nov2025"), "00:00:00 : \xC3\x86gir \xE2\x9A\x93 \xF0\x9F\x9A\xA9\r\n");
}

TEST_F(SystemLog, OnLinuxTheRootIsTheSlash) {
    machine.separator = u'/';
    WriteSystemLog(withoutSection, u"Message");
    EXPECT_EQ(fileAt(u"/log_system_21Nov2025.log"), "00:00:00 : Message\n");
}

class LocalTime : public SystemLog {
  protected:
    [[nodiscard]] std::int64_t shift(std::int64_t time = kMidnight) const {
        return ToLocalFileTime(context, time) - time;
    }
};

TEST_F(LocalTime, IsUtcLessTheBias) {
    setZone(-60);
    EXPECT_EQ(shift(), kHour);
    setZone(300);
    EXPECT_EQ(shift(), -5 * kHour);
}

TEST_F(LocalTime, DaylightSavingAddsItsBias) {
    setZone(-60, -60, true);
    EXPECT_EQ(shift(), 2 * kHour);
    setZone(-60, -60, false);
    EXPECT_EQ(shift(), kHour);
}

TEST_F(LocalTime, IsUtcWhileTheFlagIsClear) {
    setZone(-60);
    system.setFlag(1, 0);
    EXPECT_EQ(shift(), 0);
    system.setFlag(1, 0x40); // set is what is not zero
    EXPECT_EQ(shift(), kHour);
}

TEST_F(LocalTime, IsUtcWithoutSectionOrZone) {
    setZone(-60);
    EXPECT_EQ(ToLocalFileTime(withoutSection, kMidnight), kMidnight);
    machine.failOnce(Step::TimeZone);
    EXPECT_EQ(shift(), 0);
    machine.zone.reset();
    EXPECT_EQ(shift(), 0);
}

TEST_F(LocalTime, IsUnchangedWhereItWouldNotFit) {
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
    setZone(-60);
    EXPECT_EQ(ToLocalFileTime(context, kMax), kMax);
    EXPECT_EQ(ToLocalFileTime(context, kMax - kHour + 1), kMax - kHour + 1);
    EXPECT_EQ(ToLocalFileTime(context, kMax - kHour), kMax);
    setZone(60);
    EXPECT_EQ(ToLocalFileTime(context, kMin), kMin);
    EXPECT_EQ(ToLocalFileTime(context, kMin + kHour), kMin);
    setZone(std::numeric_limits<int>::max(), std::numeric_limits<int>::max(), true);
    EXPECT_EQ(ToLocalFileTime(context, 0), -std::int64_t{2} * std::numeric_limits<int>::max() * kMinute);
}

} // namespace
} // namespace tallowmere::test
