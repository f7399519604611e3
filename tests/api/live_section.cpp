#include "tests/api/live_section.hpp"

#include "core/channels/area_defaults.hpp"
#include "platform/host_window.hpp"
#include "platform/platform.hpp"

#include <cstring>

namespace tallowmere::test {

namespace {
constexpr std::size_t kBytes = 253336;
}

std::byte* liveSection() {
    static const auto section = platform::hostPlatform().openSection(u"ZanCore_363_253336", kBytes);
    return section != nullptr ? section->view() : nullptr;
}

void renewSection() {
    std::memset(liveSection(), 0, kBytes);
    initialiseArea(*reinterpret_cast<SharedArea*>(liveSection()));
}

bool narrowTextIsUtf8() {
    return platform::hostPlatform().separator() == u'/';
}

struct ReceivingWindow::State {
    std::unique_ptr<platform::HostWindow> window = platform::makeHostWindow();
};

ReceivingWindow::ReceivingWindow() : state_(std::make_unique<State>()) {}
ReceivingWindow::~ReceivingWindow() = default;

std::uint64_t ReceivingWindow::handle() const {
    return state_->window != nullptr ? state_->window->handle() : 0;
}

std::optional<ReceivingWindow::Message> ReceivingWindow::poll() {
    const auto message = state_->window->poll();
    if (!message) return std::nullopt;
    return Message{message->message, message->wParam, message->lParam};
}

} // namespace tallowmere::test
