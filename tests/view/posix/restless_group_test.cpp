// A group whose values change between any two readings of it: pages of the results can't be touched, and each attempt
// changes the section before it goes on.
#include "tests/support/new_section.hpp"
#include "view/value_look.hpp"

#include <csignal>
#include <span>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace tallowmere::test {
namespace {

constexpr std::size_t kPages = 2;

/// Results in two pages, of which the one touched last is open.
class WatchedResults {
  public:
    explicit WatchedResults(ChannelValue& record) : record_(&record) {
        const std::size_t bytes = kPages * pageBytes_;
        pages_ = static_cast<std::byte*>(::mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        current = this;
        struct sigaction handler {};
        handler.sa_sigaction = changeTheSection;
        handler.sa_flags = SA_SIGINFO;
        ::sigaction(SIGSEGV, &handler, &before_);
    }
    ~WatchedResults() {
        ::sigaction(SIGSEGV, &before_, nullptr);
        ::munmap(pages_, kPages * pageBytes_);
    }
    WatchedResults(const WatchedResults&) = delete;
    WatchedResults& operator=(const WatchedResults&) = delete;

    /// As many as fit with one beginning where the second page does: one that lay in both could not be written at
    /// once, which compilers do where the processor has wide registers.
    [[nodiscard]] std::span<tlm_view_value> values() const {
        const std::size_t inEach = pageBytes_ / sizeof(tlm_view_value);
        std::byte* const first = pages_ + pageBytes_ - inEach * sizeof(tlm_view_value);
        return {reinterpret_cast<tlm_view_value*>(first), kPages * inEach};
    }
    /// From now on nothing changes.
    void open() { ::mprotect(pages_, kPages * pageBytes_, PROT_READ | PROT_WRITE); }

  private:
    static void changeTheSection(int signal, siginfo_t* fault, void*) {
        const auto place = static_cast<std::size_t>(static_cast<std::byte*>(fault->si_addr) - current->pages_);
        if (place >= kPages * current->pageBytes_) { // a fault like any other
            ::signal(signal, SIG_DFL);
            return;
        }
        std::byte* const page = current->pages_ + place / current->pageBytes_ * current->pageBytes_;
        ::mprotect(current->pages_, kPages * current->pageBytes_, PROT_NONE);
        ::mprotect(page, current->pageBytes_, PROT_READ | PROT_WRITE);
        storePayload(*current->record_, ++current->payload_);
    }

    static inline WatchedResults* current = nullptr;
    std::size_t pageBytes_ = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    std::byte* pages_ = nullptr;
    ChannelValue* record_;
    std::uint64_t payload_ = 0;
    struct sigaction before_ {};
};

using RestlessGroup = NewSection;

TEST_F(RestlessGroup, ANewPayloadUnderTheSameHeaderAndStampIsAChange) {
    values.storeDouble(ZAN_BSP, 6.5, 0);
    WatchedResults results(area->fullBlocks[0].current[ZAN_BSP]);
    const std::vector<ChannelIndex> channels(results.values().size(), ZAN_BSP);
    const tlm_view_group group = lookAtGroup(area.get(), channels, 0, machine.now, results.values());
    results.open();
    EXPECT_EQ(group.quiet, 0U);
    EXPECT_EQ(group.tries, std::uint32_t{TLM_VIEW_GROUP_TRIES});
    for (const tlm_view_value& value : results.values()) {
        EXPECT_EQ(value.changed, 1);
        EXPECT_EQ(value.stamp, machine.now);
        EXPECT_EQ(value.record_header, std::uint64_t{ZAN_KIND_DOUBLE});
    }
}

} // namespace
} // namespace tallowmere::test
