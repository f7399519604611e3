# Runs a test program with folders of its own, so that it meets no section, settings or files of the user's:
#   cmake -DPROGRAM=... -DLIBRARY_FOLDER=... [-DEMULATOR=...] -P run_isolated.cmake
# On Windows the registry and the program-data folder are those of the Wine prefix or of the user.
cmake_minimum_required(VERSION 3.25)
string(RANDOM LENGTH 12 name)
set(temporary $ENV{TMPDIR})
if(NOT temporary)
    set(temporary /tmp)
    if(DEFINED ENV{TEMP})
        set(temporary $ENV{TEMP})
    endif()
endif()
set(home ${temporary}/tallowmere-${name})
foreach(folder runtime config data)
    file(MAKE_DIRECTORY ${home}/${folder})
    file(CHMOD ${home}/${folder} DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
endforeach()
set(ENV{XDG_RUNTIME_DIR} ${home}/runtime)
set(ENV{XDG_CONFIG_HOME} ${home}/config)
set(ENV{XDG_DATA_HOME} ${home}/data)

# Where a Windows program finds the library: through Wine, and on Windows itself.
set(ENV{WINEPATH} "Z:${LIBRARY_FOLDER}")
if(CMAKE_HOST_WIN32)
    set(ENV{PATH} "${LIBRARY_FOLDER};$ENV{PATH}")
endif()

execute_process(COMMAND ${EMULATOR} ${PROGRAM} ${ARGUMENTS} RESULT_VARIABLE result)
file(REMOVE_RECURSE ${home})
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ended with ${result}")
endif()
