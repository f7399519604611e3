// tallowmere_derive ROOT           writes the files derived from the catalogue into the tree at ROOT
// tallowmere_derive --check ROOT   tells whether they are up to date there
#include "tools/derive/catalogue_rows.hpp"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

using namespace tallowmere::derive;

namespace {

struct DerivedFile {
    const char* path;
    std::string (*print)();
};
constexpr DerivedFile kFiles[] = {
    {"/include/tallowmere/channels.h", constantsHeader},
    {"/docs/channels.md", channelTable},
    {"/bindings/python/tallowmere/channel_ids.py", pythonConstants},
    {"/bindings/node/lib/channel_ids.js", nodeConstants},
    {"/bindings/node/lib/channel_ids.d.ts", nodeTypes},
};

// Binary everywhere: the same bytes from every platform.

bool isUpToDate(const std::string& path, const std::string& text) {
    std::ifstream file(path, std::ios::binary);
    return file && std::string(std::istreambuf_iterator<char>(file), {}) == text;
}

bool write(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    return static_cast<bool>(file << text << std::flush);
}

} // namespace

int main(int argc, char** argv) {
    const bool check = argc == 3 && std::string(argv[1]) == "--check";
    if (argc != 2 && !check) {
        std::fputs("usage: tallowmere_derive [--check] ROOT\n", stderr);
        return 2;
    }
    int result = 0;
    for (const DerivedFile& file : kFiles) {
        const std::string path = argv[argc - 1] + std::string(file.path);
        const std::string text = file.print();
        if (isUpToDate(path, text)) continue;
        if (check || !write(path, text)) {
            std::fprintf(stderr, "%s: %s\n", path.c_str(),
                         check ? "out of date, build the target derive" : "not written");
            result = 1;
        }
    }
    return result;
}
