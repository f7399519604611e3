// Defines the folder identifiers that the other files name: <initguid.h> turns declarations into
// definitions, so it may stand in one file only.
#include "platform/windows/system.hpp"

#include <initguid.h>

#include <knownfolders.h>
