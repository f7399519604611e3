// How many cases a test has tried, told when it ends: documents take their figures from these lines.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>

namespace tallowmere::test {

/// Counts up from 0 and prints "cases: Suite.Test: 1234 what" with its end.
class CaseCount {
  public:
    explicit CaseCount(const char* what) : what_(what) {}
    ~CaseCount() {
        const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
        std::printf("cases: %s.%s: %zu %s\n", test->test_suite_name(), test->name(), count_, what_);
        std::fflush(stdout);
    }
    CaseCount(const CaseCount&) = delete;
    CaseCount& operator=(const CaseCount&) = delete;

    CaseCount& operator++() noexcept {
        ++count_;
        return *this;
    }
    [[nodiscard]] std::size_t count() const noexcept { return count_; }

  private:
    const char* what_;
    std::size_t count_ = 0;
};

} // namespace tallowmere::test
