// The view's look at the section while a call to the system or a request for memory fails.
#include "tests/channels/raw_section.hpp"
#include "tests/core/core_fixture.hpp"
#include "tests/support/case_count.hpp"
#include "tests/support/counted_memory.hpp"
#include "view/section_reader.hpp"

namespace tallowmere::test {
namespace {

class FailingView : public CoreTest {
  protected:
    FailingView() { machine.trace.reserve(1'000); }

    /// A reader made while something fails, and asked again when nothing does.
    void expectWholeWithTheNextQuestion(SectionReader& reader) {
        EXPECT_EQ(reader.refreshNow(), TLM_VIEW_ATTACHED);
        EXPECT_EQ(reader.generation(), 1U);
        ASSERT_NE(reader.area(), nullptr);
    }

    std::unique_ptr<CCore> core = start();
};

TEST_F(FailingView, WithAFailingCallHasNoSectionUntilTheNextQuestion) {
    CaseCount cases("failing calls");
    for (int n = 1;; ++n) {
        machine.failAnyOnce(n);
        SectionReader reader(platform);
        const bool over = machine.requests() < n;
        machine.failNever();
        EXPECT_EQ(reader.state(), over ? TLM_VIEW_ATTACHED : TLM_VIEW_NO_SECTION);
        expectWholeWithTheNextQuestion(reader);
        if (over) break;
        ++cases;
    }
    EXPECT_EQ(cases.count(), 2U);
}

TEST_F(FailingView, WithoutMemoryHasNoSectionUntilTheNextQuestion) {
    CaseCount cases("failing requests for memory");
    for (std::size_t n = 1;; ++n) {
        const std::ptrdiff_t held = piecesHeld();
        {
            const std::size_t before = allocationsMade();
            failAllocation(n);
            SectionReader reader(platform);
            const bool over = allocationsMade() - before < n;
            failAllocation(0);
            EXPECT_TRUE(reader.state() == TLM_VIEW_ATTACHED || (!over && reader.state() == TLM_VIEW_NO_SECTION));
            expectWholeWithTheNextQuestion(reader);
            if (over) break;
            ++cases;
        }
        EXPECT_EQ(piecesHeld(), held);
    }
    EXPECT_GE(cases.count(), 1U);
}

} // namespace
} // namespace tallowmere::test
