# One place for warnings, arithmetic and sanitizers; every target links tallowmere_options.
include(GNUInstallDirs)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(TALLOWMERE_CCACHE ccache)
if(TALLOWMERE_CCACHE)
    # It knows what a precompiled header is made of only where it is told to trust the headers' own dates and macros.
    set(launcher ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${TALLOWMERE_CCACHE})
    set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

add_library(tallowmere_options INTERFACE)
if(MSVC)
    target_compile_options(tallowmere_options INTERFACE /W4 /WX /utf-8 /permissive- /Zc:__cplusplus /fp:precise
        /wd5030) # attributes of other compilers
else()
    target_compile_options(tallowmere_options INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Werror
        # The same bits on every compiler: no fused multiply-add where the source has two operations.
        -ffp-contract=off)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(tallowmere_options INTERFACE -fpch-preprocess) # for ccache
    endif()
    target_compile_options(tallowmere_options INTERFACE -ffunction-sections -fdata-sections
        # g++ would pack the two words of a value record into one wide register, by way of the stack.
        -fno-tree-slp-vectorize)
    target_link_options(tallowmere_options INTERFACE -Wl,--gc-sections)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        # Its optimiser takes "literal" + std::string() for overlapping copies.
        target_compile_options(tallowmere_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
    endif()
endif()
if(WIN32)
    # Windows 10 and later: the precise clock, wide-character interfaces.
    target_compile_definitions(tallowmere_options INTERFACE
        UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
    if(MINGW)
        # Nothing beside the library or program: no compiler run-time library to ship.
        target_link_options(tallowmere_options INTERFACE -static)
    endif()
endif()
if(TALLOWMERE_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        add_link_options(-fsanitize-link-c++-runtime -lstdc++) # for the library's checks, where a client is in C
    endif()
endif()
if(TALLOWMERE_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "TALLOWMERE_FUZZ needs clang++")
    endif()
    # Everything is instrumented, so that coverage of the library itself leads the way.
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
if(TALLOWMERE_SANITIZE_THREADS)
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # It does not see what fences order. The one fence (view/value_look.cpp) stands between atomic reads, which are
        # no races with or without it. And its own instructions make it doubt a std::optional.
        add_compile_options(-Wno-tsan -Wno-maybe-uninitialized)
    endif()
endif()
if(TALLOWMERE_COVERAGE)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "TALLOWMERE_COVERAGE needs clang++")
    endif()
    # The tests too: the linker takes inline functions from whichever object comes first. Counters live in the
    # written file, so that what a child that is killed or leaves by _exit has taken counts.
    target_compile_options(tallowmere_options INTERFACE
        -fprofile-instr-generate -fcoverage-mapping "SHELL:-mllvm -runtime-counter-relocation")
    add_link_options(-fprofile-instr-generate)
endif()
