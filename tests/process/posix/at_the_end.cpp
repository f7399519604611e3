#include "tests/process/posix/at_the_end.hpp"

namespace tallowmere::test {
namespace {

void (*lastWords)() = nullptr;

[[gnu::destructor]] void end() {
    if (lastWords != nullptr) lastWords();
}

} // namespace

void callAtTheEnd(void (*words)()) {
    lastWords = words;
}

} // namespace tallowmere::test
