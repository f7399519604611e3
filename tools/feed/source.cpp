#include "tools/feed/source.hpp"

#include "tools/nmea/field.hpp"

#include <exception>
#include <optional>
#include <utility>

namespace tallowmere::feed {
namespace {

std::optional<std::uint16_t> portOf(std::string_view text) {
    const auto port = nmea::wholeNumber(text);
    if (!port || *port == 0 || *port > 65'535) return std::nullopt;
    return static_cast<std::uint16_t>(*port);
}

OpenedSource badName(const std::string& name, std::string_view why) {
    return {nullptr, "cannot read " + name + ": " + std::string(why), true};
}

OpenedSource openNamedUdp(const std::string& name) {
    const auto port = portOf(std::string_view(name).substr(4));
    if (!port) return badName(name, "the port is a number from 1 to 65535, as in udp:10110");
    return openUdp(*port);
}

OpenedSource openNamedTcp(const std::string& name, Notify notify) {
    const std::string address = name.substr(4);
    const std::size_t colon = address.rfind(':');
    const auto port = colon == std::string::npos ? std::nullopt : portOf(std::string_view(address).substr(colon + 1));
    std::string host = address.substr(0, colon == std::string::npos ? 0 : colon);
    if (host.size() > 2 && host.front() == '[' && host.back() == ']') host = host.substr(1, host.size() - 2);
    if (!port || host.empty()) return badName(name, "give host and port, as in tcp:192.168.0.10:10110");
    return openTcp(host, *port, std::move(notify));
}

} // namespace

OpenedSource openSource(const std::string& name, Notify notify) {
    try {
        if (name == "-") return openStandardInput();
        if (name.starts_with("udp:")) return openNamedUdp(name);
        if (name.starts_with("tcp:")) return openNamedTcp(name, std::move(notify));
        return openFile(name);
    } catch (const std::exception& error) { // sockets or threads that the system does not give
        return {nullptr, "cannot read " + name + ": " + error.what()};
    }
}

} // namespace tallowmere::feed
