# third_party_sqlite: the system's library where it has one. For Windows there is no package; its one source file
# lies where scripts/setup has put it.
if(NOT WIN32)
    find_package(SQLite3 REQUIRED)
    add_library(third_party_sqlite INTERFACE)
    target_link_libraries(third_party_sqlite INTERFACE SQLite::SQLite3)
    return()
endif()

set(sqlite_source ${PROJECT_SOURCE_DIR}/build/third_party/sqlite3)
if(NOT EXISTS ${sqlite_source}/sqlite3.c)
    message(FATAL_ERROR "${sqlite_source}/sqlite3.c not found: run scripts/setup test, which fetches what a build for Windows needs")
endif()
add_library(third_party_sqlite STATIC ${sqlite_source}/sqlite3.c) # not ours: without our warnings
target_include_directories(third_party_sqlite SYSTEM PUBLIC ${sqlite_source})
target_compile_definitions(third_party_sqlite PRIVATE SQLITE_THREADSAFE=0 SQLITE_OMIT_LOAD_EXTENSION SQLITE_DQS=0)
if(TALLOWMERE_TESTS AND NOT MSVC)
    # A third of the time that optimising takes. What is packaged is built without tests, and optimised.
    target_compile_options(third_party_sqlite PRIVATE -O1)
endif()
