// A small shared library of its own: what ends after others that the program names before it.
#pragma once

namespace tallowmere::test {

/// `words` is called when this library ends.
[[gnu::visibility("default")]] void callAtTheEnd(void (*words)());

} // namespace tallowmere::test
