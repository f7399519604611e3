// The fenced blocks of a document, so that what it shows is what is tested.
#pragma once

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace tallowmere::test {

/// The lines of the block of docs/DOCUMENT whose opening fence says exactly `info`. Throws when there is none.
inline std::string documentBlock(const std::string& document, const std::string& info) {
    std::ifstream file(std::string(TALLOWMERE_DOCUMENTS) + "/" + document, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::string fence = "\n```" + info + "\n";
    const std::size_t start = text.find(fence);
    const std::size_t end = text.find("\n```\n", start + fence.size() - 1);
    if (start == std::string::npos || end == std::string::npos)
        throw std::runtime_error(document + " has no block " + info);
    return text.substr(start + fence.size(), end + 1 - start - fence.size());
}

} // namespace tallowmere::test
