// The owners of handles, with a kind of their own that counts, and with the real kinds.
#include "platform/windows/handles.hpp"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>
#include <vector>

namespace tallowmere::platform {
namespace {

std::vector<int> givenBack;

struct CountedKind {
    using Value = int;
    static Value nothing() noexcept { return -1; }
    static void giveBack(Value value) noexcept {
        givenBack.push_back(value);
        ::SetLastError(ERROR_INVALID_HANDLE);
    }
};
using Counted = Unique<CountedKind>;

static_assert(!std::is_copy_constructible_v<Counted> && !std::is_copy_assignable_v<Counted>);
static_assert(std::is_nothrow_move_constructible_v<Counted> && std::is_nothrow_move_assignable_v<Counted>);

class HandleOwner : public testing::Test {
  protected:
    void SetUp() override { givenBack.clear(); }
};

TEST_F(HandleOwner, EndGivesBackOnce) {
    { const Counted owner(7); }
    EXPECT_EQ(givenBack, std::vector{7});
}

TEST_F(HandleOwner, OwningNothingGivesNothingBack) {
    {
        const Counted none;
        const Counted alsoNone(-1);
        EXPECT_FALSE(none);
        EXPECT_FALSE(alsoNone);
    }
    EXPECT_TRUE(givenBack.empty());
}

TEST_F(HandleOwner, AMoveLeavesNothingBehind) {
    Counted from(7);
    const Counted to(std::move(from));
    EXPECT_FALSE(from); // NOLINT(bugprone-use-after-move): what a moved-from owner holds is the question
    EXPECT_EQ(to.get(), 7);
    EXPECT_TRUE(givenBack.empty());
}

TEST_F(HandleOwner, MoveAssignmentGivesBackWhatWasOwned) {
    Counted from(7);
    Counted to(8);
    to = std::move(from);
    EXPECT_EQ(givenBack, std::vector{8});
    EXPECT_EQ(to.get(), 7);
}

TEST_F(HandleOwner, SelfMoveKeeps) {
    Counted owner(7);
    Counted& same = owner;
    owner = std::move(same);
    EXPECT_EQ(owner.get(), 7);
    EXPECT_TRUE(givenBack.empty());
}

TEST_F(HandleOwner, ResetReleaseAndReceiveGiveBackWhatTheyShould) {
    Counted owner(7);
    owner.reset(8);
    EXPECT_EQ(givenBack, std::vector{7});
    EXPECT_EQ(owner.release(), 8);
    EXPECT_FALSE(owner);
    EXPECT_EQ(givenBack, std::vector{7});
    owner.reset(9);
    *owner.receive() = 10;
    EXPECT_EQ(givenBack, (std::vector{7, 9}));
    EXPECT_EQ(owner.get(), 10);
}

TEST_F(HandleOwner, GivingBackKeepsTheLastError) {
    ::SetLastError(ERROR_ALREADY_EXISTS);
    { const Counted owner(7); }
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_ALREADY_EXISTS});
}

TEST_F(HandleOwner, ASectionsNameIsFreeOnceItsOwnerIsGone) {
    constexpr wchar_t kName[] = L"TallowmereHandleTest";
    {
        const UniqueSection section(
            ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4096, kName));
        ASSERT_TRUE(section);
        const UniqueSection again(::OpenFileMappingW(FILE_MAP_READ, FALSE, kName));
        EXPECT_TRUE(again);
    }
    const UniqueSection gone(::OpenFileMappingW(FILE_MAP_READ, FALSE, kName));
    EXPECT_FALSE(gone);
}

TEST_F(HandleOwner, AFileThatCannotBeOpenedIsNothing) {
    const UniqueFile file(
        ::CreateFileW(L"C:\\no such folder\\file", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_FALSE(file);
}

} // namespace
} // namespace tallowmere::platform
