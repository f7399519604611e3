// The one function of the library that attaches late.
#pragma once

#include <tallowmere/tallowmere.h>

/// Does what the library does while it is loaded. True when that made the section.
extern "C" TALLOWMERE_API bool attachNow() noexcept;
