#include "tools/commands/client.hpp"

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

} // namespace tallowmere::tools
