// Datagrams that instruments send to a port of this machine.
#include "tools/feed/source.hpp"

#include <asio.hpp>

#include <array>

namespace tallowmere::feed {
namespace {

using asio::ip::udp;

class UdpSource final : public Source {
  public:
    /// Empty on success.
    [[nodiscard]] asio::error_code open(std::uint16_t port) {
        asio::error_code error;
        socket_.open(udp::v4(), error);
        if (!error) socket_.bind(udp::endpoint(udp::v4(), port), error);
        return error;
    }

    State read(std::string& bytes, std::chrono::milliseconds wait) override {
        if (!receiving_) receive();
        io_.restart();
        io_.run_for(wait);
        if (errors_ >= kMostErrors) {
            error_ = "receiving datagrams failed: " + lastError_.message();
            return State::Failed;
        }
        if (received_.empty()) return State::Nothing;
        bytes += received_;
        received_.clear();
        return State::Data;
    }

  private:
    void receive() {
        receiving_ = true;
        socket_.async_receive(asio::buffer(datagram_), [this](const asio::error_code& error, std::size_t size) {
            receiving_ = false;
            if (error == asio::error::operation_aborted) return;
            io_.stop();
            lastError_ = error;
            errors_ = error ? errors_ + 1 : 0;
            if (error || size == 0) return;
            received_.append(datagram_.data(), size);
            received_ += '\n'; // a datagram holds whole lines; senders often leave out the last line end
        });
    }

    /// One error concerns one datagram; so many in a row mean that the network has gone.
    static constexpr int kMostErrors = 100;

    asio::io_context io_{1};
    udp::socket socket_{io_};
    std::array<char, 65'536> datagram_{};
    std::string received_;
    bool receiving_ = false;
    int errors_ = 0; // in a row
    asio::error_code lastError_;
};

} // namespace

OpenedSource openUdp(std::uint16_t port) {
    auto source = std::make_unique<UdpSource>();
    if (const asio::error_code error = source->open(port))
        return {nullptr, "cannot listen on UDP port " + std::to_string(port) + ": " + error.message() +
                             ". Another program may be using the port; end it or choose another"};
    return {std::move(source), {}};
}

} // namespace tallowmere::feed
