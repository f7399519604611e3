// A program that has loaded the library and does as told, a command a line: "set CHANNEL VALUE BOAT",
// "get CHANNEL BOAT", "name CHANNEL", "rename INDEX NAME", "mob LAT LON". Answers each with a line. Ends with
// its input.
#include <tallowmere/tallowmere.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

void answer(const char* line) {
    unsigned channel = 0;
    unsigned boat = 0;
    double value = 0;
    double other = 0;
    char text[64] = "";
    std::uint16_t source = 0;
    if (std::sscanf(line, "set %u %lf %u", &channel, &value, &boat) == 3) {
        std::printf("%u\n", SetZanVar(static_cast<std::uint16_t>(channel), value, static_cast<std::uint16_t>(boat)));
    } else if (std::sscanf(line, "get %u %u", &channel, &boat) == 2) {
        value = -1;
        const bool has =
            GetZanVar(static_cast<std::uint16_t>(channel), &value, static_cast<std::uint16_t>(boat), &source) != 0;
        if (has)
            std::printf("%.17g\n", value);
        else
            std::printf("none\n");
    } else if (std::sscanf(line, "name %u", &channel) == 1) {
        GetZanVarName(static_cast<std::uint16_t>(channel), text);
        std::printf("%s\n", text);
    } else if (std::sscanf(line, "rename %u %31s", &channel, text) == 2) {
        SetZanUserVarName(static_cast<std::uint16_t>(channel), text);
        std::printf("done\n");
    } else if (std::sscanf(line, "mob %lf %lf", &value, &other) == 2) {
        std::printf("%d\n", SetMOB(value, other));
    } else {
        std::printf("unknown command\n");
    }
    std::fflush(stdout);
}

} // namespace

int main() {
    std::printf("ready\n");
    std::fflush(stdout);
    char line[256];
    while (std::fgets(line, sizeof line, stdin) != nullptr) answer(line);
    return 0;
}
