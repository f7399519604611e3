// A server of instrument data. When it goes away, the feed tries again until it is back.
#include "tools/feed/source.hpp"

#include "platform/terminal.hpp"

#include <asio.hpp>

#include <array>
#include <utility>

namespace tallowmere::feed {
namespace {

using asio::ip::tcp;
using namespace std::chrono_literals;

constexpr auto kConnectLimit = 10s;
constexpr auto kRetryDelay = 2s;
constexpr auto kSlice = 50ms;

class TcpSource final : public Source {
  public:
    TcpSource(std::string host, std::uint16_t port, Notify notify)
        : host_(std::move(host)), port_(std::to_string(port)), notify_(std::move(notify)) {}

    /// The first connection, waited for. Empty on success or when the user wants to end.
    [[nodiscard]] asio::error_code connectFirst() {
        startConnecting();
        while (phase_ == Phase::Connecting && !platform::stopRequested()) run(kSlice);
        return phase_ == Phase::Idle ? lastError_ : asio::error_code();
    }

    State read(std::string& bytes, std::chrono::milliseconds wait) override {
        switch (phase_) {
        case Phase::Connected:
            if (!receiving_) receive();
            break;
        case Phase::Connecting:
            break;
        case Phase::Idle:
            if (std::chrono::steady_clock::now() >= retryAt_) startConnecting();
            break;
        }
        run(wait);
        if (received_.empty()) return State::Nothing;
        bytes += received_;
        received_.clear();
        return State::Data;
    }

    [[nodiscard]] std::string name() const { return host_ + ":" + port_; }

  private:
    enum class Phase { Idle, Connecting, Connected };

    void run(std::chrono::milliseconds wait) {
        io_.restart();
        timer_.expires_after(wait); // keeps run_for from returning at once while there is nothing else to do
        timer_.async_wait([this](const asio::error_code& error) {
            if (!error) io_.stop();
        });
        io_.run_for(wait + 10ms);
        timer_.cancel();
    }

    void startConnecting() {
        phase_ = Phase::Connecting;
        const unsigned attempt = ++attempt_; // answers to an earlier attempt may still arrive
        asio::error_code ignored;
        socket_.close(ignored);
        limit_.expires_after(kConnectLimit);
        limit_.async_wait([this, attempt](const asio::error_code& error) {
            if (error || !isCurrent(attempt)) return;
            resolver_.cancel();
            asio::error_code closing;
            socket_.close(closing);
            connectFailed(asio::error::timed_out);
        });
        resolver_.async_resolve(
            host_, port_, [this, attempt](const asio::error_code& error, tcp::resolver::results_type found) {
                if (!isCurrent(attempt)) return;
                if (error) {
                    connectFailed(error);
                    return;
                }
                asio::async_connect(socket_, found,
                                    [this, attempt](const asio::error_code& failure, const tcp::endpoint&) {
                                        if (!isCurrent(attempt)) return;
                                        if (failure)
                                            connectFailed(failure);
                                        else
                                            connected();
                                    });
            });
    }

    [[nodiscard]] bool isCurrent(unsigned attempt) const noexcept {
        return phase_ == Phase::Connecting && attempt == attempt_;
    }

    void connected() {
        phase_ = Phase::Connected;
        limit_.cancel();
        if (lost_) notify_("connected again to " + name());
        lost_ = false;
        io_.stop();
    }

    void connectFailed(const asio::error_code& error) {
        phase_ = Phase::Idle;
        limit_.cancel();
        lastError_ = error;
        retryAt_ = std::chrono::steady_clock::now() + kRetryDelay;
        io_.stop();
    }

    void receive() {
        receiving_ = true;
        socket_.async_read_some(asio::buffer(piece_), [this](const asio::error_code& error, std::size_t size) {
            receiving_ = false;
            received_.append(piece_.data(), size);
            if (error) lose(error);
            io_.stop();
        });
    }

    void lose(const asio::error_code& error) {
        phase_ = Phase::Idle;
        lost_ = true;
        retryAt_ = std::chrono::steady_clock::now() + kRetryDelay;
        received_ += '\n'; // the line that was cut ends here
        const std::string why = error == asio::error::eof ? "the other side closed it" : error.message();
        notify_("connection to " + name() + " lost (" + why + "); trying again every 2 seconds");
    }

    std::string host_;
    std::string port_;
    Notify notify_;
    asio::io_context io_{1};
    tcp::resolver resolver_{io_};
    tcp::socket socket_{io_};
    asio::steady_timer timer_{io_};
    asio::steady_timer limit_{io_};
    Phase phase_ = Phase::Idle;
    unsigned attempt_ = 0;
    bool receiving_ = false;
    bool lost_ = false;
    asio::error_code lastError_;
    std::chrono::steady_clock::time_point retryAt_;
    std::array<char, 16'384> piece_{};
    std::string received_;
};

} // namespace

OpenedSource openTcp(const std::string& host, std::uint16_t port, Notify notify) {
    auto source = std::make_unique<TcpSource>(host, port, std::move(notify));
    if (const asio::error_code error = source->connectFirst())
        return {nullptr, "cannot connect to " + source->name() + ": " + error.message() +
                             ". Check the address, and that the server of the instruments is running"};
    return {std::move(source), {}};
}

} // namespace tallowmere::feed
