// Puts the XML parser on the counted heap. For programs linked with --wrap=XML_ParserCreate.
#include "tests/support/counted_memory.hpp"

#include <expat.h>

extern "C" XML_Parser __wrap_XML_ParserCreate(const XML_Char* encoding);

extern "C" XML_Parser __wrap_XML_ParserCreate(const XML_Char* encoding) {
    using namespace tallowmere::test;
    static const XML_Memory_Handling_Suite heap{countedMalloc, countedRealloc, countedFree};
    return ::XML_ParserCreate_MM(encoding, &heap, nullptr);
}
