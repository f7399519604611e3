// Standard input. Its reads can't be given a time limit, so a thread of their own does them.
#include "tools/feed/source.hpp"

#include <array>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>

namespace tallowmere::feed {
namespace {

/// Shared with the reading thread, which may outlive the source when its read never ends.
struct Pipe {
    static constexpr std::size_t kMost = 1 << 20; // the writer waits while so much is unread

    std::mutex mutex;
    std::condition_variable changed;
    std::string bytes;
    bool ended = false;
    bool failed = false;
    bool abandoned = false;
};

/// Bytes until a line end, at most as many as `piece` holds, so that each line is given on at once.
std::size_t readPiece(std::array<char, 1024>& piece) {
    std::size_t count = 0;
    while (count < piece.size()) {
        const int byte = std::getc(stdin);
        if (byte == EOF) break;
        piece[count++] = static_cast<char>(byte);
        if (byte == '\n') break;
    }
    return count;
}

void readAll(Pipe& pipe) {
    std::array<char, 1024> piece{};
    for (;;) {
        const std::size_t count = readPiece(piece);
        std::unique_lock lock(pipe.mutex);
        pipe.changed.wait(lock, [&] { return pipe.abandoned || pipe.bytes.size() < Pipe::kMost; });
        pipe.bytes.append(piece.data(), count);
        pipe.ended = count == 0 || std::feof(stdin) != 0 || std::ferror(stdin) != 0;
        pipe.failed = std::ferror(stdin) != 0;
        pipe.changed.notify_all();
        if (pipe.ended || pipe.abandoned) return;
    }
}

class InputSource final : public Source {
  public:
    InputSource() : pipe_(std::make_shared<Pipe>()), thread_([pipe = pipe_] { readAll(*pipe); }) {}

    ~InputSource() override {
        {
            const std::lock_guard lock(pipe_->mutex);
            pipe_->abandoned = true;
        }
        pipe_->changed.notify_all();
        if (isStuck())
            thread_.detach();
        else
            thread_.join();
    }

    State read(std::string& bytes, std::chrono::milliseconds wait) override {
        std::unique_lock lock(pipe_->mutex);
        pipe_->changed.wait_for(lock, wait, [this] { return !pipe_->bytes.empty() || pipe_->ended; });
        if (!pipe_->bytes.empty()) {
            bytes += pipe_->bytes;
            pipe_->bytes.clear();
            pipe_->changed.notify_all();
            return State::Data;
        }
        if (!pipe_->ended) return State::Nothing;
        if (!pipe_->failed) return State::End;
        error_ = "reading standard input failed";
        return State::Failed;
    }

    [[nodiscard]] bool isStuck() const noexcept override {
        const std::lock_guard lock(pipe_->mutex);
        return !pipe_->ended;
    }

  private:
    std::shared_ptr<Pipe> pipe_;
    std::thread thread_;
};

} // namespace

OpenedSource openStandardInput() {
    return {std::make_unique<InputSource>(), {}};
}

} // namespace tallowmere::feed
