# Fails when the Windows library needs anything that Windows does not bring, such as a compiler's run-time
# library: cmake -DLIBRARY=... -DOBJDUMP=... -P check_imports.cmake
cmake_minimum_required(VERSION 3.25)
set(of_windows
    advapi32.dll kernel32.dll msvcrt.dll ole32.dll shell32.dll shlwapi.dll ucrtbase.dll user32.dll xmllite.dll)

execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "DLL Name: [^\r\n]+" lines "${text}")
if(NOT lines)
    message(FATAL_ERROR "${LIBRARY} names no library at all")
endif()
foreach(line IN LISTS lines)
    string(REPLACE "DLL Name: " "" library "${line}")
    string(TOLOWER "${library}" library)
    if(NOT library IN_LIST of_windows AND NOT library MATCHES "^api-ms-win-")
        message(FATAL_ERROR "the library needs ${library}")
    endif()
endforeach()
message(STATUS "only libraries of Windows: ${lines}")
