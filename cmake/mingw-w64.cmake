# Cross build for Windows x64 with Debian's mingw-w64, posix thread model.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# Packages also come from CMAKE_PREFIX_PATH, as they do natively.
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
# Without the run-time library's debug information: Wine reads all of a file's sections whenever it is loaded.
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_RELEASE_INIT -s)
endforeach()
# Tests run through Wine, in the prefix that WINEPREFIX names (scripts/wine makes one where missing).
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine)
