# Header-only libraries from the system's packages. A cross build gets a folder of its own with links to
# just these, never all of /usr/include.
set(TALLOWMERE_THIRD_PARTY_INCLUDE ${CMAKE_BINARY_DIR}/third_party/include)
file(MAKE_DIRECTORY ${TALLOWMERE_THIRD_PARTY_INCLUDE})

function(tallowmere_header_library target)
    add_library(${target} INTERFACE)
    foreach(entry IN LISTS ARGN)
        find_path(found_${entry} NAMES ${entry} PATHS /usr/include /usr/local/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH NO_CACHE)
        if(NOT found_${entry})
            message(FATAL_ERROR "${entry} not found: run scripts/setup, which installs what the build needs")
        endif()
        file(CREATE_LINK ${found_${entry}}/${entry} ${TALLOWMERE_THIRD_PARTY_INCLUDE}/${entry} SYMBOLIC)
    endforeach()
    target_include_directories(${target} SYSTEM INTERFACE ${TALLOWMERE_THIRD_PARTY_INCLUDE})
endfunction()

if(TALLOWMERE_TOOLS)
    tallowmere_header_library(third_party_cli11 CLI)
    tallowmere_header_library(third_party_asio asio asio.hpp)
    tallowmere_header_library(third_party_json nlohmann)
    target_compile_definitions(third_party_asio INTERFACE ASIO_STANDALONE ASIO_NO_DEPRECATED)
    if(WIN32)
        target_link_libraries(third_party_asio INTERFACE ws2_32 mswsock)
    endif()
    include(Sqlite)
endif()

if(TALLOWMERE_TESTS)
    # Built from the packaged sources, so that every compiler, preset and platform has its own.
    set(INSTALL_GTEST OFF)
    set(gtest_force_shared_crt ON)
    add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
    if(NOT MSVC)
        foreach(library gtest gtest_main gmock gmock_main)
            target_compile_options(${library} PRIVATE -O0) # as the tests: built once, run for seconds
        endforeach()
    endif()
endif()
