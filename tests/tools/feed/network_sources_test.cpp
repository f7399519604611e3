// Sources on the network, tried on this machine alone.
#include "tools/feed/source.hpp"

#include <asio.hpp>
#include <gmock/gmock.h>

#include <optional>
#include <vector>

namespace tallowmere::feed {
namespace {

using namespace std::chrono_literals;
using asio::ip::tcp;
using asio::ip::udp;
using testing::HasSubstr;

std::uint16_t freeUdpPort() {
    asio::io_context io;
    udp::socket socket(io, udp::endpoint(asio::ip::address_v4::loopback(), 0));
    return socket.local_endpoint().port();
}

/// Reads until `size` bytes are there, at most ten seconds.
std::string readBytes(Source& source, std::size_t size) {
    std::string bytes;
    const auto end = std::chrono::steady_clock::now() + 10s;
    while (bytes.size() < size && std::chrono::steady_clock::now() < end) (void)source.read(bytes, 20ms);
    return bytes;
}

TEST(UdpSource, DatagramsBecomeLines) {
    const std::uint16_t port = freeUdpPort();
    const OpenedSource opened = openSource("udp:" + std::to_string(port), [](std::string_view) {});
    ASSERT_NE(opened.source, nullptr) << opened.error;
    EXPECT_FALSE(opened.source->isRecording());
    std::string bytes;
    EXPECT_EQ(opened.source->read(bytes, 5ms), Source::State::Nothing);

    asio::io_context io;
    udp::socket sender(io, udp::v4());
    const udp::endpoint target(asio::ip::address_v4::loopback(), port);
    sender.send_to(asio::buffer(std::string("$IIMTW,016,C*3A")), target);
    EXPECT_EQ(readBytes(*opened.source, 16), "$IIMTW,016,C*3A\n");
    sender.send_to(asio::buffer(std::string()), target);
    sender.send_to(asio::buffer(std::string("one\r\ntwo\r\n")), target);
    EXPECT_EQ(readBytes(*opened.source, 11), "one\r\ntwo\r\n\n");
}

TEST(UdpSource, PortInUseIsAnErrorWithAReason) {
    asio::io_context io;
    udp::socket other(io, udp::endpoint(udp::v4(), 0));
    const std::string port = std::to_string(other.local_endpoint().port());
    const OpenedSource opened = openSource("udp:" + port, [](std::string_view) {});
    EXPECT_EQ(opened.source, nullptr);
    EXPECT_THAT(opened.error, HasSubstr("UDP port " + port));
    EXPECT_THAT(opened.error, HasSubstr("Another program"));
}

TEST(UdpSource, WaitingTakesAboutAsLongAsAsked) {
    const OpenedSource opened = openSource("udp:" + std::to_string(freeUdpPort()), [](std::string_view) {});
    ASSERT_NE(opened.source, nullptr) << opened.error;
    const auto start = std::chrono::steady_clock::now();
    std::string bytes;
    for (int turn = 0; turn < 5; ++turn) EXPECT_EQ(opened.source->read(bytes, 20ms), Source::State::Nothing);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 80ms) << "a feed without data must not spin";
}

class TcpSource : public testing::Test {
  protected:
    [[nodiscard]] std::string name() const { return "tcp:127.0.0.1:" + std::to_string(port); }
    OpenedSource open() {
        return openSource(name(), [this](std::string_view text) { told.emplace_back(text); });
    }

    asio::io_context io;
    std::optional<tcp::acceptor> acceptor{tcp::acceptor(io, tcp::endpoint(asio::ip::address_v4::loopback(), 0))};
    std::uint16_t port = acceptor->local_endpoint().port();
    std::vector<std::string> told;
};

TEST_F(TcpSource, BytesArriveAsSent) {
    const OpenedSource opened = open();
    ASSERT_NE(opened.source, nullptr) << opened.error;
    tcp::socket server = acceptor->accept();
    asio::write(server, asio::buffer(std::string("$IIMTW,0")));
    EXPECT_EQ(readBytes(*opened.source, 8), "$IIMTW,0");
    asio::write(server, asio::buffer(std::string("16,C*3A\r\n")));
    EXPECT_EQ(readBytes(*opened.source, 9), "16,C*3A\r\n");
}

TEST_F(TcpSource, RefusedConnectionIsAnErrorWithAReason) {
    acceptor.reset();
    const OpenedSource opened = open();
    EXPECT_EQ(opened.source, nullptr);
    EXPECT_THAT(opened.error, HasSubstr("127.0.0.1:" + std::to_string(port)));
    EXPECT_THAT(opened.error, HasSubstr("Check the address"));
}

TEST_F(TcpSource, LostConnectionIsMadeAgain) {
    const OpenedSource opened = open();
    ASSERT_NE(opened.source, nullptr) << opened.error;
    {
        tcp::socket server = acceptor->accept();
        asio::write(server, asio::buffer(std::string("$II")));
    }
    EXPECT_EQ(readBytes(*opened.source, 4), "$II\n") << "a line that was cut ends where it was cut";
    ASSERT_EQ(told.size(), 1U);
    EXPECT_THAT(told[0], HasSubstr("lost"));

    std::string bytes;
    const auto start = std::chrono::steady_clock::now();
    acceptor->non_blocking(true);
    asio::error_code error = asio::error::would_block;
    tcp::socket server(io);
    while (error && std::chrono::steady_clock::now() - start < 20s) {
        EXPECT_EQ(opened.source->read(bytes, 20ms), Source::State::Nothing);
        acceptor->accept(server, error);
    }
    ASSERT_FALSE(error) << error.message();
    EXPECT_GE(std::chrono::steady_clock::now() - start, 1500ms) << "not in a hurry";
    server.non_blocking(false);
    asio::write(server, asio::buffer(std::string("again\n")));
    EXPECT_EQ(readBytes(*opened.source, 6), "again\n");
    EXPECT_THAT(told.back(), HasSubstr("connected again"));
}

TEST_F(TcpSource, WaitingTakesAboutAsLongAsAsked) {
    const OpenedSource opened = open();
    ASSERT_NE(opened.source, nullptr) << opened.error;
    const auto start = std::chrono::steady_clock::now();
    std::string bytes;
    for (int turn = 0; turn < 5; ++turn) EXPECT_EQ(opened.source->read(bytes, 20ms), Source::State::Nothing);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 80ms) << "a feed without data must not spin";
}

} // namespace
} // namespace tallowmere::feed
