// What a host, a client or a view asks of the system beside a host's life, with one call failing: the first, the
// second, and so on. After each failure it is asked once more and must be whole.
#include "core/ccore.hpp"
#include "core/channels/section_name.hpp"
#include "platform/durable_file.hpp"
#include "platform/host_window.hpp"
#include "platform/settings_complaints.hpp"
#include "tests/channels/raw_section.hpp"
#include "tests/contract/posix_surroundings.hpp"
#include "tests/faults/posix/failing_calls.hpp"
#include "tests/faults/posix/holdings.hpp"
#include "tests/faults/root_log.hpp"
#include "tests/support/attached_library.hpp"
#include "tests/support/case_count.hpp"
#include "tests/support/counted_memory.hpp"
#include "view/section_reader.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;
using platform::HostMessage;
using platform::hostPlatform;

class OpeningFailure : public ::testing::Test {
  protected:
    static constexpr double kSpeed = 6.5;
    static constexpr HostMessage kMessage{0x8019, 8, -1};
    /// Not ENOENT, as with a host's life.
    inline static const std::vector<int> kErrors{EIO, ENOMEM, EMFILE, ENOSPC, EACCES, EINTR};
    /// Without EACCES: it says that the runtime folder is not this user's, and then another is the right one.
    inline static const std::vector<int> kShortages{EIO, ENOMEM, EMFILE, ENOSPC, EINTR};

    void startHost() {
        host_ = std::make_unique<CCore>(hostPlatform(), false);
        ASSERT_TRUE(host_->values().store(1, Record::ofNumber(kSpeed), 0, INT64_MAX));
    }

    /// `act` with one of its calls failing, each in turn; `judge` gets what it gave, with nothing failing any more.
    /// Nothing may be left open or mapped.
    template <class Act, class Judge>
    void failEach(std::size_t least, Act act, Judge judge, const std::vector<int>& errors = kErrors) const {
        CaseCount cases("failing calls of the system");
        for (const int error : errors) {
            for (std::size_t n = 1;; ++n) {
                const Holdings before = holdings(surroundings_.top());
                failCall(n, error);
                auto given = act();
                const bool over = endFailing() < n;
                SCOPED_TRACE(std::to_string(n) + " " + failedCall() + " " + std::to_string(error));
                judge(std::move(given), over);
                EXPECT_EQ(holdings(surroundings_.top()), before);
                if (over) break;
                ++cases;
            }
        }
        EXPECT_GE(cases.count(), least);
    }

    static bool showsTheHosts(const std::byte* section) {
        return RawSection(const_cast<std::byte*>(section)).get<double>(place::fullValue(1, 0) + 8) == kSpeed;
    }
    static std::unique_ptr<platform::SharedSection> open() {
        return hostPlatform().openSection(sectionName(), kSharedAreaBytes);
    }
    static std::unique_ptr<platform::SectionLook> look() {
        return hostPlatform().lookAtSection(sectionName(), kSharedAreaBytes);
    }

    [[nodiscard]] std::size_t socketsLeft() const {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(surroundings_.runtime())) count += entry.is_socket() ? 1U : 0U;
        return count;
    }
    /// What a host that was killed leaves.
    void leaveDeadSocket() const {
        const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const std::string path = (surroundings_.runtime() / "tallowmere-host-0123456789abcdef").string();
        ASSERT_LT(path.size(), sizeof address.sun_path);
        path.copy(address.sun_path, path.size());
        ::unlink(path.c_str());
        EXPECT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::chmod(path.c_str(), S_IRUSR | S_IWUSR), 0);
        ::close(socket);
    }
    static bool carries(platform::HostWindow& window) {
        return hostPlatform().postToHost(window.handle(), kMessage) != 0 && window.poll() == kMessage && !window.poll();
    }

    RootLog log_;
    PosixSurroundings surroundings_;
    std::unique_ptr<CCore> host_;
};

TEST_F(OpeningFailure, OfTheSectionGivesItWholeOrNot) {
    startHost();
    failEach(20, open, [](auto section, bool over) {
        if (over) {
            ASSERT_NE(section, nullptr);
        }
        if (section) {
            EXPECT_TRUE(section->existed() && showsTheHosts(section->view()));
        }
        section.reset();
        section = open();
        ASSERT_NE(section, nullptr);
        EXPECT_TRUE(showsTheHosts(section->view()));
    });
}

TEST_F(OpeningFailure, OfALookGivesItWholeOrNot) {
    startHost();
    struct Looked {
        std::unique_ptr<platform::SectionLook> look;
        bool owned = false;
        std::u16string maker;
    };
    const auto all = [] {
        Looked seen{look(), false, {}};
        if (!seen.look) return seen;
        seen.owned = seen.look->isOwned();
        seen.maker = seen.look->maker();
        return seen;
    };
    const std::u16string maker = all().maker;
    failEach(40, all, [&](Looked seen, bool over) {
        EXPECT_TRUE(!over || (seen.look && seen.owned && seen.maker == maker));
        if (seen.look) {
            EXPECT_TRUE(showsTheHosts(seen.look->view()) && seen.look->isOwned());
        }
        EXPECT_TRUE(seen.maker.empty() || seen.maker == maker);
        seen.look.reset();
        const auto next = look();
        EXPECT_TRUE(next && next->isOwned() && showsTheHosts(next->view()));
    });
}

TEST_F(OpeningFailure, OfAViewsQuestionIsOverWithTheNext) {
    startHost();
    SectionReader reader(hostPlatform());
    ASSERT_EQ(reader.state(), TLM_VIEW_ATTACHED);
    const Holdings before = holdings(surroundings_.top());
    failEach(
        10, [&] { return reader.refreshNow(); },
        [&](tlm_view_attachment given, bool over) {
            EXPECT_TRUE(given == TLM_VIEW_ATTACHED || (!over && given == TLM_VIEW_WRITERS_GONE));
            EXPECT_EQ(reader.refreshNow(), TLM_VIEW_ATTACHED);
            EXPECT_TRUE(showsTheHosts(reinterpret_cast<const std::byte*>(reader.area())));
        });
    EXPECT_EQ(holdings(surroundings_.top()), before);
}

/// What everybody has to find can't be put elsewhere because the folder could not be opened this once.
TEST_F(OpeningFailure, OfTheRuntimeFolderPutsNoSectionElsewhere) {
    const auto make = [] { return hostPlatform().openOrCreateSection(sectionName(), kSharedAreaBytes); };
    const fs::path place = surroundings_.runtime() / fs::path(sectionName());
    failEach(
        40, make,
        [&](auto section, bool over) {
            EXPECT_TRUE(section || !over);
            EXPECT_TRUE(!section || fs::exists(place));
            section.reset();
            section = make();
            EXPECT_TRUE(section && section->view() != nullptr && fs::exists(place));
            section.reset();
            fs::remove(place);
        },
        kShortages);
}

/// Where the file system can't reserve space, it is written by hand.
TEST_F(OpeningFailure, OfASectionWithoutReservedSpaceGivesItWholeOrNot) {
    const auto make = [] {
        refuseReservations(true);
        return hostPlatform().openOrCreateSection(sectionName(), kSharedAreaBytes);
    };
    failEach(80, make, [&](auto section, bool over) {
        EXPECT_TRUE(section || !over);
        for (int time = 0; time < 2; ++time) {
            if (section && section->view() != nullptr) {
                EXPECT_FALSE(section->existed());
                const auto* const bytes = section->view();
                EXPECT_TRUE(std::all_of(bytes, bytes + kSharedAreaBytes, [](std::byte b) { return b == std::byte{}; }));
                section->view()[100] = std::byte{1};
            } else {
                EXPECT_EQ(time, 0);
            }
            section.reset();
            section = make();
        }
        refuseReservations(false);
    });
}

TEST_F(OpeningFailure, OfAHostsWindowGivesOneThatWorksOrNone) {
    const auto make = [&] { return platform::makeHostWindow(); };
    leaveDeadSocket();
    failEach(
        40, make,
        [&](auto window, bool over) {
            EXPECT_TRUE(window || !over);
            if (window) {
                EXPECT_TRUE(carries(*window));
            }
            window.reset();
            window = make();
            ASSERT_NE(window, nullptr);
            EXPECT_TRUE(carries(*window));
            EXPECT_EQ(socketsLeft(), 1U); // the dead one has gone
            window.reset();
            EXPECT_EQ(socketsLeft(), 0U);
            leaveDeadSocket();
        },
        kShortages);
}

TEST_F(OpeningFailure, OfAPostIsItsAnswer) {
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    failEach(
        20, [&] { return hostPlatform().postToHost(window->handle(), kMessage); },
        [&](int posted, bool over) {
            EXPECT_TRUE(posted != 0 || !over);
            EXPECT_EQ(window->poll().has_value(), posted != 0);
            EXPECT_TRUE(carries(*window));
        });
}

TEST_F(OpeningFailure, OfTakingAMessageLeavesItForTheNextTime) {
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    ASSERT_NE(hostPlatform().postToHost(window->handle(), kMessage), 0);
    failEach(
        6, [&] { return window->poll(); },
        [&](std::optional<HostMessage> taken, bool) {
            EXPECT_EQ(taken ? taken : window->poll(), kMessage);
            EXPECT_EQ(window->poll(), std::nullopt);
            EXPECT_NE(hostPlatform().postToHost(window->handle(), kMessage), 0);
        });
}

TEST_F(OpeningFailure, AtAWindowsEndLeavesASocketThatTheNextRemoves) {
    auto window = platform::makeHostWindow();
    failEach(
        6,
        [&] {
            window.reset();
            return 0;
        },
        [&](int, bool) {
            EXPECT_LE(socketsLeft(), 1U);
            platform::makeHostWindow().reset();
            EXPECT_EQ(socketsLeft(), 0U);
            window = platform::makeHostWindow();
            ASSERT_NE(window, nullptr);
        });
}

TEST_F(OpeningFailure, OfAnAlarmsMessageLeavesTheMark) {
    startHost();
    const AttachedLibrary library(*host_);
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    host_->area()->hostWindow = window->handle();
    const RawSection raw(reinterpret_cast<std::byte*>(host_->area()));
    double latitude = 0;
    failEach(
        20,
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
            EXPECT_NE(SetMOB(++latitude, 2.0), 0);
            EXPECT_TRUE(window->poll().has_value());
        });
}

/// A second failure beside the section's: nothing is told twice or waits, and there are no values.
TEST_F(OpeningFailure, BesidesTheSectionsLeavesALibraryWithoutValues) {
    const fs::path obstacle = surroundings_.runtime() / fs::path(sectionName());
    fs::create_directory(obstacle);
    const int errors = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    const int standardError = ::dup(STDERR_FILENO);
    const auto start = [&] {
        ::dup2(errors, STDERR_FILENO);
        return std::make_unique<CCore>(hostPlatform(), true);
    };
    failEach(
        40, start,
        [&](auto core, bool) {
            ::dup2(standardError, STDERR_FILENO);
            EXPECT_EQ(core->area(), nullptr);
            EXPECT_FALSE(core->values().store(1, Record::ofNumber(kSpeed), 0, INT64_MAX));
            core.reset();
            fs::remove(obstacle);
            startHost();
            host_.reset();
            fs::remove(obstacle); // the section's remnant
            fs::create_directory(obstacle);
        },
        kShortages);
    ::close(errors);
    ::close(standardError);
}

TEST_F(OpeningFailure, OfADurableFileLosesWhatIsToldToBeLost) {
    const fs::path path = surroundings_.top() / "log";
    struct Kept {
        std::unique_ptr<platform::DurableFile> file;
        bool written = false;
        bool synced = false;
    };
    const auto write = [&] {
        Kept kept{platform::makeDurableFile(path.u16string()), false, false};
        if (!kept.file) return kept;
        kept.written = kept.file->write("a line\n");
        kept.synced = kept.file->sync();
        return kept;
    };
    failEach(20, write, [&](Kept kept, bool over) {
        EXPECT_TRUE(!over || (kept.file && kept.written && kept.synced));
        if (kept.written) {
            EXPECT_EQ(readBytes(path), "a line\n");
        }
        kept.file.reset();
        fs::remove(path);
        const Kept next = write();
        EXPECT_TRUE(next.file && next.written && next.synced);
        fs::remove(path);
    });
}

TEST_F(OpeningFailure, OfTheComplaintsAboutSettingsTellsLess) {
    surroundings_.writeSettings("[HKCU\\Software\\Tallowmere\\core]\r\nnonsense\r\n\"Sys_b5\"=dword:x\r\n");
    const auto ask = [] { return platform::settingsComplaints(); };
    const std::size_t all = ask().size();
    ASSERT_EQ(all, 2U);
    failEach(20, ask, [&](const auto& complaints, bool over) {
        EXPECT_TRUE(over ? complaints.size() == all : complaints.size() <= all);
        EXPECT_EQ(ask().size(), all);
    });
}

} // namespace
} // namespace tallowmere::test
