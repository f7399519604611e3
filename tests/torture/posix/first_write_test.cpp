// A reader that is held up between the two loads of a record while somebody writes it for the first time.
#include "core/channels/section_access.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/mman.h>

namespace tallowmere::torture {
namespace {

constexpr std::size_t kPage = 4096;
constexpr double kValue = 6.123456789;

std::byte* pages = nullptr;
ChannelValue* record = nullptr; // its header ends one page, its payload begins the next

/// Called in the midst of a load of the closed page: the other one has been loaded or will be.
void writeRecord(int) {
    ::mprotect(pages, 2 * kPage, PROT_READ | PROT_WRITE);
    storeRecord(*record, Record::ofNumber(kValue));
}

Record loadAcross(std::size_t closedPage) {
    storeRecord(*record, {0, 0});
    EXPECT_EQ(::mprotect(pages + closedPage * kPage, kPage, PROT_NONE), 0);
    return loadRecord(*record);
}

TEST(FirstWrite, OverZerosReadsAsZeroOrAsTheValue) {
    pages =
        static_cast<std::byte*>(::mmap(nullptr, 2 * kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(static_cast<void*>(pages), MAP_FAILED);
    record = reinterpret_cast<ChannelValue*>(pages + kPage - 8);
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = writeRecord;
    ::sigaction(SIGSEGV, &action, &before);
    const Record whilePayload = loadAcross(1);
    const Record whileHeader = loadAcross(0);
    ::sigaction(SIGSEGV, &before, nullptr);
    EXPECT_EQ(whilePayload, Record::ofNumber(kValue));
    EXPECT_EQ(whileHeader.kind(), static_cast<std::uint8_t>(StorageKind::Double));
    EXPECT_EQ(whileHeader.number(), 0.0);
    ::munmap(pages, 2 * kPage);
}

} // namespace
} // namespace tallowmere::torture
