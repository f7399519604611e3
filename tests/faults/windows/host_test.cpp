// A host's whole life on the real system, with one call of the system failing: the first, the second, and so on. Then
// likewise what else is asked of the system.
#include "log/system_log.hpp"
#include "platform/durable_file.hpp"
#include "platform/host_window.hpp"
#include "tests/bad_input/started_files.hpp"
#include "tests/faults/root_log.hpp"
#include "tests/faults/windows/failing_calls.hpp"
#include "tests/support/attached_library.hpp"
#include "tests/support/case_count.hpp"
#include "tests/support/counted_memory.hpp"
#include "tests/support/windows/holdings.hpp"
#include "view/section_reader.hpp"

#include <windows.h>

#include <sddl.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <sstream>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;
using platform::HostMessage;
using platform::hostPlatform;

constexpr DWORD kErrors[] = {ERROR_ACCESS_DENIED, ERROR_NOT_ENOUGH_MEMORY};
constexpr HostMessage kMessage{0x8001, 1, 2};
using Texts = std::vector<std::u16string>;
const Texts kNone;
const Texts kNotMade{u"Unable to create shared memory map"};
const Texts kNotMapped{u"Unable to map shared memory"};
constexpr double kSpeed = 6.25;
constexpr std::string_view kLine = "a line\n";

const wchar_t* wide(const std::u16string& text) {
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

struct Closing {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept { ::CloseHandle(handle); }
};
using Handle = std::unique_ptr<HANDLE, Closing>;

/// What is looked at of a life: each is the user's or the default.
struct Seen {
    bool section = false;
    Taken files;
    double length = 0;      // system variable 0: 20.5, else 15.85
    int flag = 0;           // system flag 5: 1, else 0
    int mode = 0;           // system integer 6: 3, else 5
    std::string name;       // of channel 1: "BSP"; a character that was not converted is a '?'
    std::u16string renamed; // a user channel: "V", else nothing
    friend bool operator==(const Seen&, const Seen&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Seen& seen) {
        return out << seen.section << " " << seen.files << " " << seen.length << " " << seen.flag << " " << seen.mode
                   << " " << seen.name << " " << seen.renamed.size();
    }
};

std::size_t viewCount() {
    std::size_t views = 0;
    forEachRegion([&views](const MEMORY_BASIC_INFORMATION& region) { views += region.Type == MEM_MAPPED ? 1U : 0U; });
    return views;
}

/// What this process holds.
struct Held {
    std::size_t handles = handleCount(::GetCurrentProcessId());
    std::size_t views = viewCount();
    std::ptrdiff_t pieces = piecesHeld();
    std::size_t heapBytes = bytesOfAllHeaps(); // what the system gives out, too
    friend bool operator==(const Held&, const Held&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Held& held) {
        return out << held.handles << " handles, " << held.views << " views, " << held.pieces << " pieces, "
                   << held.heapBytes << " bytes";
    }
};

class HostFailure : public FilesTest {
  protected:
    HostFailure() {
        const double length = 20.5;
        machine.set(kCoreKey, u"Sys_v0", REG_BINARY, std::string(reinterpret_cast<const char*>(&length), 8));
        // The first has the log's dates in local time.
        for (const char16_t* flag : {u"Sys_b1", u"Sys_b5"})
            machine.set(kCoreKey, flag, REG_DWORD, std::string("\1\0\0\0", 4));
        machine.set(kCoreKey, u"Sys_i6", REG_DWORD, std::string("\3\0\0\0", 4));
    }
    static void TearDownTestSuite() {
        const auto* const tests = ::testing::UnitTest::GetInstance();
        if (tests->test_to_run_count() == tests->total_test_count()) {
            EXPECT_EQ(callsThatNeverFailed(), std::vector<std::string>{});
        }
    }

    /// `act` with one of its calls failing, each in turn; `judge` gets what it gave, with nothing failing any more, and
    /// whether nothing did. Nothing may be left open.
    template <class Act, class Judge> static void failEach(std::size_t least, Act act, Judge judge) {
        const auto failNth = [&](std::size_t n, DWORD error) {
            failCall(n, error);
            auto given = act();
            const bool over = endFailing() < n || n == 0;
            SCOPED_TRACE(std::to_string(n) + " " + failedCall() + " " + std::to_string(error));
            judge(std::move(given), over);
            return over;
        };
        // What the system and the framework of the tests keep from the first time on.
        for (const std::size_t n : {0U, 1U}) failNth(n, kErrors[0]);
        CaseCount cases("failing calls of the system");
        Held before;
        for (const DWORD error : kErrors) {
            for (std::size_t n = 1; !failNth(n, error); ++n) {
                const Held after;
                EXPECT_EQ(after, before) << n << " " << failedCall() << " " << error;
                if (after != before) before = Held(); // with what is noted of this failure
                ++cases;
            }
        }
        EXPECT_GE(cases.count(), least);
    }

    /// The eleven functions, of which those that ask the system for nothing must work whatever failed.
    static void callAll(Seen& seen) {
        const std::uint8_t works = seen.section ? 1 : 0;
        double value = 0;
        std::uint8_t flag = 0;
        std::uint16_t source = 0;
        ChannelValue record{};
        char name[ZAN_NAME_BYTES];
        EXPECT_EQ(GetBoatNum(), 100);
        EXPECT_EQ(GetZanVarNum(), 414);
        EXPECT_EQ(SetZanVar(ZAN_DEPTH, kSpeed, 1), works);
        EXPECT_EQ(GetZanVar2(ZAN_DEPTH, &record, 1, &source), works);
        EXPECT_EQ(SetZanVar2(ZAN_TRIM, &record, 1), works);
        EXPECT_EQ(GetZanVar(ZAN_TRIM, &value, 1, &source), works);
        EXPECT_TRUE(!works || value == kSpeed);
        EXPECT_EQ(GetSysVar(0, &seen.length), works);
        EXPECT_EQ(GetSysBool(5, &flag), 1);
        seen.flag = flag;
        GetZanVarName(ZAN_BSP, name);
        seen.name = name;
        SetZanUserVarName(4, "V");
        EXPECT_EQ(SetMOB(1.0, 2.0), 0); // nobody's window
    }

    /// One life: made, used through the exported functions, ended.
    static Seen live() {
        Seen seen;
        CCore core(true);
        const AttachedLibrary library(core);
        seen.section = core.area() != nullptr;
        EXPECT_EQ(core.madeSection(), seen.section);
        callAll(seen);
        if (!seen.section) return seen;
        const RawSection raw(reinterpret_cast<std::byte*>(core.area()));
        seen.files = takenBy(core);
        seen.mode = raw.get<std::int32_t>(place::integer(6));
        seen.renamed = raw.text(place::shortName(kFirstUserChannel + 4), 16);
        return seen;
    }
    static bool isUsersOrDefault(const Seen& seen) {
        return !seen.files.foreign && (seen.length == 20.5 || seen.length == 15.85) &&
               (seen.flag == 1 || seen.flag == 0) && (seen.mode == 3 || seen.mode == 5) &&
               std::set<std::string>{"BSP", "?SP", "B?P", "BS?"}.contains(seen.name) &&
               (seen.renamed == u"V" || seen.renamed.empty());
    }
    static std::u16string location() {
        CRegEx key(hostPlatform());
        key.Open(kCoreKey);
        return key.QueryString(u"Location", u"");
    }
    /// True when the thread was told to quit, which it is not any more then.
    static bool toldToQuit() {
        MSG message{};
        return ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != 0;
    }

    /// Through Wine the owner of a section is known where it was made with a security descriptor only.
    static Handle sectionWithAnOwner() {
        SECURITY_ATTRIBUTES attributes{sizeof attributes, nullptr, FALSE};
        const std::u16string name = sectionName();
        ::ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:(A;;GA;;;WD)", SDDL_REVISION_1,
                                                               &attributes.lpSecurityDescriptor, nullptr);
        Handle section(
            ::CreateFileMappingW(INVALID_HANDLE_VALUE, &attributes, PAGE_READWRITE, 0, kSharedAreaBytes, wide(name)));
        ::LocalFree(attributes.lpSecurityDescriptor);
        return section;
    }
    /// What a user is told once a call has failed that is needed for the section.
    static Texts noticeOfFailed() {
        return std::string_view(failedCall()) == "CreateFileMappingW" ? kNotMade : kNotMapped;
    }
    /// The boxes, and a quit message with any of them.
    static void expectNotices(const Texts& boxes) {
        EXPECT_EQ(boxesShown(), boxes);
        EXPECT_EQ(toldToQuit(), !boxes.empty());
    }

    void startHost() {
        host = std::make_unique<CCore>(false);
        ASSERT_TRUE(host->values().store(1, Record::ofNumber(kSpeed), 0, kNoTime));
    }
    static bool showsTheHosts(const std::byte* section) {
        return RawSection(const_cast<std::byte*>(section)).get<double>(place::fullValue(1, 0) + 8) == kSpeed;
    }
    static bool carries(platform::HostWindow& window) {
        return hostPlatform().postToHost(window.handle(), kMessage) != 0 && window.poll() == kMessage && !window.poll();
    }

    struct Kept {
        std::unique_ptr<platform::DurableFile> file;
        bool written = false;
        bool synced = false;
        [[nodiscard]] bool whole() const { return written && synced; }
    };
    [[nodiscard]] fs::path durable() const { return machine.folder() / "log"; }
    [[nodiscard]] Kept writeDurably() const {
        Kept kept{platform::makeDurableFile(durable().u16string()), false, false};
        if (!kept.file) return kept;
        kept.written = kept.file->write(kLine);
        kept.synced = kept.file->sync();
        return kept;
    }

    RootLog log;
    std::unique_ptr<CCore> host;
    const Seen whole{true, allBut(kFiles), 20.5, 1, 3, "BSP", u"V"};
};

TEST_F(HostFailure, WithoutOneALifeHasAllThatTheUserSet) {
    EXPECT_EQ(live(), whole);
    EXPECT_TRUE(location().ends_with(u"\\"));
    EXPECT_EQ(boxesShown(), kNone);
}

TEST_F(HostFailure, OfACallLeavesTheDocumentedDefault) {
    const auto forget = [&] { machine.set(kCoreKey, u"Location", REG_SZ, storedText(u"before")); };
    forget();
    failEach(300, live, [&](const Seen& seen, bool over) {
        EXPECT_TRUE(over ? seen == whole : !seen.section || isUsersOrDefault(seen)) << seen;
        expectNotices(seen.section ? kNone : noticeOfFailed());
        EXPECT_EQ(hostPlatform().openSection(sectionName(), kSharedAreaBytes), nullptr) << "still alive";
        const std::u16string noted = location();
        EXPECT_TRUE(noted == u"before" || noted.empty() || noted.ends_with(u"\\"));
        EXPECT_EQ(live(), whole);
        EXPECT_TRUE(location().ends_with(u"\\"));
        forget();
    });
}

TEST_F(HostFailure, OfACallBesidesTheSectionsLeavesTheNoticesAndNoValue) {
    const std::u16string name = sectionName();
    {
        const Handle other(::CreateEventW(nullptr, TRUE, FALSE, wide(name))); // nothing can be made or opened
        failEach(250, live, [](const Seen& seen, bool) {
            EXPECT_FALSE(seen.section);
            expectNotices(kNotMade);
        });
    }
    const Handle small(::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4096, wide(name)));
    failEach(250, live, [](const Seen& seen, bool) {
        EXPECT_FALSE(seen.section);
        expectNotices(noticeOfFailed());
    });
}

TEST_F(HostFailure, TransfersOfOneByteAtATimeCarryAll) {
    shortenTransfers();
    const Seen seen = live();
    const Kept kept = writeDurably();
    endFailing();
    EXPECT_EQ(seen, whole);
    EXPECT_TRUE(kept.whole());
    EXPECT_EQ(fs::file_size(durable()), kLine.size());
}

/// Those behind it fail in HostMemory.
TEST_F(HostFailure, OfARequestForMemoryUntilTheSectionIsThereLeavesTheNoticeAndNoValue) {
    CaseCount cases("failing requests for memory");
    const std::size_t before = allocationsMade();
    static_cast<void>(hostPlatform().openOrCreateSection(sectionName(), kSharedAreaBytes));
    const std::size_t forSection = allocationsMade() - before;
    for (std::size_t n = 1; n <= forSection; ++n) {
        SCOPED_TRACE(n);
        const std::ptrdiff_t held = piecesHeld();
        failAllocation(n);
        EXPECT_FALSE(live().section);
        failAllocation(0);
        EXPECT_EQ(boxesShown(), kNotMade);
        EXPECT_TRUE(toldToQuit());
        EXPECT_EQ(piecesHeld(), held);
        EXPECT_TRUE(live().section);
        ++cases;
    }
    EXPECT_GT(cases.count(), 0U);
}

TEST_F(HostFailure, OfListingTheSettingsTellsLess) {
    const auto key = hostPlatform().openSettings(kCoreKey);
    ASSERT_NE(key, nullptr);
    const auto list = [&] { return key->names(); };
    const Texts all = list();
    EXPECT_EQ(std::set(all.begin(), all.end()),
              (std::set<std::u16string>{u"DataFolder", u"Sys_v0", u"Sys_b1", u"Sys_b5", u"Sys_i6"}));
    failEach(10, list, [&](const Texts& names, bool over) {
        EXPECT_TRUE(names == all || !over);
        ASSERT_LE(names.size(), all.size());
        EXPECT_TRUE(std::ranges::equal(names, std::span(all).first(names.size())));
        EXPECT_EQ(list(), all);
    });
}

TEST_F(HostFailure, OfReadingADocumentTellsLess) {
    write("some.xml", "<a b='1'><c d='2'/></a>");
    const std::u16string file = path("some.xml").u16string();
    struct Read {
        Texts elements;
        std::size_t lines = 0; // of all elements
        bool malformed = false;
    };
    const auto read = [&] {
        Read all;
        platform::XmlElement element;
        const auto reader = hostPlatform().openXml(file);
        if (!reader) return all;
        while (reader->next(element)) {
            all.lines += reader->line();
            std::u16string& text = all.elements.emplace_back(element.name);
            for (const auto& [name, value] : element.attributes) text += u" " + name + u"=" + value;
        }
        all.malformed = reader->malformed();
        return all;
    };
    const Texts full{u"a b=1", u"c d=2"};
    failEach(70, read, [&](const Read& all, bool over) {
        EXPECT_TRUE(over ? all.elements == full && all.lines == 2 && !all.malformed : all.lines <= 2);
        ASSERT_LE(all.elements.size(), full.size());
        for (std::size_t i = 0; i < all.elements.size(); ++i) // an attribute may be missing
            EXPECT_TRUE(all.elements[i] == full[i] || all.elements[i] == full[i].substr(0, 1));
        EXPECT_TRUE(all.malformed || all.elements.size() != 1) << "an element is missing without a word";
        EXPECT_EQ(read().elements, full);
    });
}

TEST_F(HostFailure, OfTheTimeZonesQuestionTellsNone) {
    failEach(
        2, [] { return hostPlatform().timeZone(); },
        [](const std::optional<platform::TimeZone>& zone, bool over) { EXPECT_EQ(zone.has_value(), over); });
}

TEST_F(HostFailure, OfAClientsAttachGivesTheHostsSectionOrNone) {
    startHost();
    const auto attach = [] { return std::make_unique<CCore>(false); };
    failEach(6, attach, [&](std::unique_ptr<CCore> client, bool over) {
        EXPECT_TRUE(client->area() != nullptr || !over);
        EXPECT_FALSE(client->madeSection());
        expectNotices(client->area() != nullptr ? kNone : noticeOfFailed());
        EXPECT_TRUE(client->area() == nullptr || showsTheHosts(reinterpret_cast<const std::byte*>(client->area())));
        client = attach();
        EXPECT_TRUE(client->area() && showsTheHosts(reinterpret_cast<const std::byte*>(client->area())));
    });
}

TEST_F(HostFailure, OfOpeningTheSectionGivesItWholeOrNot) {
    startHost();
    const auto open = [] { return hostPlatform().openSection(sectionName(), kSharedAreaBytes); };
    failEach(6, open, [&](auto section, bool over) {
        EXPECT_TRUE(section || !over);
        EXPECT_TRUE(!section || (section->existed() && showsTheHosts(section->view())));
        section = open();
        EXPECT_TRUE(section && showsTheHosts(section->view()));
    });
}

TEST_F(HostFailure, OfALookGivesItWholeOrNot) {
    const Handle section = sectionWithAnOwner();
    startHost();
    struct Look {
        std::unique_ptr<platform::SectionLook> section;
        bool owned = false;
        std::u16string maker;
    };
    const auto look = [] {
        Look given{hostPlatform().lookAtSection(sectionName(), kSharedAreaBytes), false, {}};
        if (!given.section) return given;
        given.owned = given.section->isOwned();
        given.maker = given.section->maker();
        return given;
    };
    const std::u16string maker = look().maker;
    EXPECT_NE(maker, u"");
    failEach(20, look, [&](const Look& given, bool over) {
        EXPECT_TRUE(!over || (given.section && given.owned && given.maker == maker));
        EXPECT_TRUE(given.maker.empty() || given.maker == maker);
        EXPECT_TRUE(!given.section || (showsTheHosts(given.section->view()) && given.section->isOwned()));
        const Look next = look();
        EXPECT_TRUE(next.section && next.owned && next.maker == maker && showsTheHosts(next.section->view()));
    });
}

TEST_F(HostFailure, OfAViewsQuestionIsOverWithTheNext) {
    startHost();
    SectionReader reader(hostPlatform());
    failEach(
        6, [&] { return reader.refreshNow(); },
        [&](tlm_view_attachment given, bool over) {
            EXPECT_TRUE(given == TLM_VIEW_ATTACHED || (!over && given == TLM_VIEW_WRITERS_GONE));
            EXPECT_EQ(reader.refreshNow(), TLM_VIEW_ATTACHED);
            EXPECT_TRUE(showsTheHosts(reinterpret_cast<const std::byte*>(reader.area())));
        });
}

TEST_F(HostFailure, OfAHostsWindowGivesOneThatWorksOrNone) {
    const auto make = [] { return platform::makeHostWindow(); };
    failEach(2, make, [&](auto window, bool over) {
        EXPECT_TRUE(window ? carries(*window) : !over);
        window = make();
        EXPECT_TRUE(window && carries(*window));
    });
}

TEST_F(HostFailure, OfAPostIsItsAnswer) {
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    failEach(
        4, [&] { return hostPlatform().postToHost(window->handle(), kMessage); },
        [&](int posted, bool over) {
            EXPECT_TRUE(posted != 0 || !over);
            EXPECT_EQ(window->poll().has_value(), posted != 0);
            EXPECT_TRUE(carries(*window));
        });
}

TEST_F(HostFailure, OfTakingAMessageLeavesItForTheNextTime) {
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    ASSERT_NE(hostPlatform().postToHost(window->handle(), kMessage), 0);
    failEach(
        2, [&] { return window->poll(); },
        [&](std::optional<HostMessage> taken, bool) {
            EXPECT_EQ(taken ? taken : window->poll(), kMessage);
            EXPECT_EQ(window->poll(), std::nullopt);
            EXPECT_NE(hostPlatform().postToHost(window->handle(), kMessage), 0);
        });
}

TEST_F(HostFailure, OfAnAlarmsMessageLeavesTheMark) {
    startHost();
    const AttachedLibrary library(*host);
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    host->area()->hostWindow = window->handle();
    const RawSection raw(reinterpret_cast<std::byte*>(host->area()));
    double latitude = 0;
    failEach(
        4,
        [&] {
            const std::size_t requests = allocationsMade();
            const int posted = SetMOB(++latitude, 2.0);
            EXPECT_EQ(allocationsMade(), requests);
            return posted;
        },
        [&](int posted, bool over) {
            EXPECT_TRUE(posted != 0 || !over);
            EXPECT_EQ(window->poll().has_value(), posted != 0);
            EXPECT_EQ(raw.get<double>(place::kMobLatitude), latitude);
        });
}

TEST_F(HostFailure, OfADurableFileLosesWhatIsToldToBeLost) {
    const auto write = [&] { return writeDurably(); };
    failEach(6, write, [&](Kept kept, bool over) {
        EXPECT_EQ(kept.whole(), over);
        kept.file.reset();
        EXPECT_EQ(fs::exists(durable()) && fs::file_size(durable()) == kLine.size(), kept.written);
        fs::remove(durable());
        EXPECT_TRUE(writeDurably().whole());
        fs::remove(durable());
    });
}

TEST_F(HostFailure, OfALogLineLosesTheLineOnly) {
    CCore core(true);
    const auto content = [&] {
        fs::create_directories(machine.folder() / "log_system");
        std::ostringstream all;
        for (const auto& file : fs::directory_iterator(machine.folder() / "log_system"))
            all << std::ifstream(file.path(), std::ios::binary).rdbuf();
        return all.str();
    };
    const auto tell = [&] {
        WriteSystemLog(core.context(), u"told");
        return 0;
    };
    failEach(20, tell, [&](int, bool over) {
        EXPECT_EQ(boxesShown(), Texts{u"told"});
        const std::string line = content();
        EXPECT_TRUE(line.size() == std::string_view("12:34:56 : told\r\n").size() || (line.empty() && !over)) << line;
        tell();
        EXPECT_EQ(boxesShown(), Texts{u"told"});
        EXPECT_TRUE(content().ends_with(" : told\r\n"));
        fs::remove_all(machine.folder() / "log_system");
    });
}

} // namespace
} // namespace tallowmere::test
