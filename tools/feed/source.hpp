// Where a feed's bytes come from.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tallowmere::feed {

/// Tells the user something that isn't an error: a connection lost, made again.
using Notify = std::function<void(std::string_view)>;

class Source {
  public:
    enum class State {
        Data,    // bytes were added
        Nothing, // none yet
        End,     // there will be no more
        Failed,  // nor here; error() says why
    };

    virtual ~Source() = default;
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    /// Appends what has arrived, waiting for it a little; returns soon after `wait` at the latest.
    [[nodiscard]] virtual State read(std::string& bytes, std::chrono::milliseconds wait) = 0;

    /// What went wrong, where, and what to do, after Failed.
    [[nodiscard]] const std::string& error() const noexcept { return error_; }

    /// True for a recording, whose lines are given out at the pace of its own times.
    [[nodiscard]] virtual bool isRecording() const noexcept { return false; }

    /// True while a thread of this source is in a read of the system that only the system can end. The
    /// program must then leave without the usual ending of streams, which would wait for that read.
    [[nodiscard]] virtual bool isStuck() const noexcept { return false; }

  protected:
    Source() = default;
    std::string error_;
};

struct OpenedSource {
    std::unique_ptr<Source> source; // null on failure
    std::string error;              // then: what went wrong, where, and what to do
    bool badName = false;           // then: it is the name that is wrong, nothing was tried
};

/// name   a file, "-" for standard input, "udp:PORT" or "tcp:HOST:PORT" (HOST an IPv6 address in brackets)
[[nodiscard]] OpenedSource openSource(const std::string& name, Notify notify);

// The kinds of sources, for openSource.
[[nodiscard]] OpenedSource openFile(const std::string& path);
[[nodiscard]] OpenedSource openStandardInput();
[[nodiscard]] OpenedSource openUdp(std::uint16_t port);
[[nodiscard]] OpenedSource openTcp(const std::string& host, std::uint16_t port, Notify notify);

} // namespace tallowmere::feed
