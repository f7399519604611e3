#include "bench/wrapper_clients.hpp"

#include <tallowmere/tallowmere.hpp>

namespace tallowmere::bench {

double readInC(int calls) noexcept {
    double sum = 0;
    for (int i = 0; i < calls; ++i) {
        double value;
        uint16_t source;
        if (GetZanVar(ZAN_BSP, &value, 0, &source)) sum += value;
        if (GetZanVar(ZAN_AWA, &value, 3, &source)) sum += value;
    }
    return sum;
}

double readInCpp(int calls) noexcept {
    double sum = 0;
    for (int i = 0; i < calls; ++i) {
        if (auto speed = client::read(ZAN_BSP)) sum += *speed;
        if (auto angle = client::read(ZAN_AWA, client::Boat(3))) sum += *angle;
    }
    return sum;
}

int writeInC(int calls) noexcept {
    int stored = 0;
    double speed = 6.4;
    for (int i = 0; i < calls; ++i)
        if (SetZanVar(ZAN_BSP, speed += 1e-6, 0)) ++stored;
    return stored;
}

int writeInCpp(int calls) noexcept {
    int stored = 0;
    double speed = 6.4;
    for (int i = 0; i < calls; ++i)
        if (client::write(ZAN_BSP, speed += 1e-6)) ++stored;
    return stored;
}

} // namespace tallowmere::bench
