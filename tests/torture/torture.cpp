// Many processes on one section, killed, racing, crowded. See scripts/torture.
//   torture kills [COUNT [SEED]]
//   torture attaches [ROUNDS]
//   torture readers [SECONDS]
//   torture load [PROCESSES [SECONDS]]
#include "tests/torture/roles.hpp"
#include "tests/torture/system.hpp"

#include <cstdio>
#include <exception>
#include <map>

using namespace tallowmere::torture;

namespace {

unsigned numberAt(const Arguments& arguments, std::size_t index, unsigned otherwise) {
    return index < arguments.size() ? static_cast<unsigned>(std::stoul(arguments[index])) : otherwise;
}

int kills(const Arguments& arguments) {
    return runKills(numberAt(arguments, 0, 200), numberAt(arguments, 1, std::random_device{}()));
}

int attaches(const Arguments& arguments) {
    return runAttaches(numberAt(arguments, 0, 20));
}

int readers(const Arguments& arguments) {
    return runReaders(numberAt(arguments, 0, 2));
}

int load(const Arguments& arguments) {
    return runLoad(numberAt(arguments, 0, 10), numberAt(arguments, 1, 2));
}

/// Played in a process that another one of this program started.
bool isRole(const std::string& part) {
    return part != "kills" && part != "attaches" && part != "readers" && part != "load";
}

} // namespace

int main(int count, char** words) {
    const std::map<std::string, int (*)(const Arguments&)> parts{
        {"kills", kills},     {"attaches", attaches},   {"readers", readers}, {"load", load},
        {"victim", beVictim}, {"newcomer", beNewcomer}, {"loader", beLoader}, {"racer", beRacer},
        {"sitter", beSitter}, {"feeder", beFeeder},     {"comer", beComer},
    };
    const Arguments all(words + 1, words + count);
    const auto part = all.empty() ? parts.end() : parts.find(all.front());
    if (part == parts.end()) {
        std::fprintf(
            stderr,
            "torture: kills [COUNT [SEED]], attaches [ROUNDS], readers [SECONDS] or load [PROCESSES [SECONDS]]\n");
        return 2;
    }
    try {
        if (isRole(part->first)) greet();
        return part->second(Arguments(all.begin() + 1, all.end()));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "torture %s: %s\n", all.front().c_str(), error.what());
        return 1;
    }
}
