// The smallest client in C++: writes a boat speed and reads it back.
#include <tallowmere/tallowmere.hpp>

namespace client = tallowmere::client;

int main() {
    if (!client::write(ZAN_BSP, 6.4)) return 1;
    return client::read(client::Channel::named("BSP")) == 6.4 ? 0 : 2;
}
