#include "tools/commands/client.hpp"

#include "tools/commands/channel_finder.hpp"

#include <sstream>

namespace tallowmere::tools {

bool Client::isConnected() const {
    if (core_.area() != nullptr) return true;
    context_.err << "tallowmere: the shared data can be neither made nor opened; see the message before this one\n";
    return false;
}

void Client::warnWhenAlone() const {
    if (!core_.madeSection()) return;
    context_.err << "tallowmere: no other program holds the shared data; it is gone when this command ends\n";
}

std::optional<std::vector<ChannelIndex>> Client::find(const std::vector<std::string>& names) const {
    std::string errors;
    auto channels = findAll(ChannelFinder(core_.area()), names, errors);
    std::istringstream lines(errors);
    for (std::string line; std::getline(lines, line);) context_.err << "tallowmere: " << line << '\n';
    return channels;
}

} // namespace tallowmere::tools
