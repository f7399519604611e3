// The section that the loaded library works on, mapped a second time by the test program, and the other
// ends of what the library does. Plain types only: the program itself must not see the core's headers,
// which would switch the public header to static linking.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace tallowmere::test {

/// First byte of the living section, mapped until the program ends. Null when there is no section.
[[nodiscard]] std::byte* liveSection();

/// Fills the section as a new one is filled, without any settings or files of a user.
void renewSection();

/// True when names leave the library in UTF-8, false when in the code page of the thread.
[[nodiscard]] bool narrowTextIsUtf8();

/// A window of this program, as a host application has one.
class ReceivingWindow {
  public:
    struct Message {
        std::uint32_t message;
        std::uint64_t wParam;
        std::int64_t lParam;
    };
    ReceivingWindow();
    ~ReceivingWindow();
    ReceivingWindow(const ReceivingWindow&) = delete;
    ReceivingWindow& operator=(const ReceivingWindow&) = delete;

    /// 0 when no window could be made.
    [[nodiscard]] std::uint64_t handle() const;
    [[nodiscard]] std::optional<Message> poll();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tallowmere::test
