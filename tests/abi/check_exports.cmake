# Fails unless the library shows exactly the eleven functions, or those that EXPECTED names:
#   cmake -DLIBRARY=... -DNM=... | -DOBJDUMP=... [-DEXPECTED=...] -P check_exports.cmake
cmake_minimum_required(VERSION 3.25)
set(expected
    GetBoatNum GetSysBool GetSysVar GetZanVar GetZanVar2 GetZanVarName GetZanVarNum
    SetMOB SetZanUserVarName SetZanVar SetZanVar2)
if(EXPECTED)
    set(expected ${EXPECTED})
endif()

if(OBJDUMP) # a Windows library: the table is printed as lines of "[   3] GetZanVar"
    execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    string(FIND "${text}" "[Ordinal/Name Pointer] Table" start)
    if(start EQUAL -1)
        message(FATAL_ERROR "${LIBRARY} has no table of names")
    endif()
    string(SUBSTRING "${text}" ${start} -1 text)
    string(REGEX MATCHALL "\n[ \t]*\\[ *[0-9]+\\][^\n]*" lines "${text}")
    set(pattern "^.* ([^ \t\r\n]+)[ \t\r]*$")
else() # an ELF library: lines of "00000000000012a0 T GetZanVar"
    execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "[^\n]+" lines "${text}")
    set(pattern "^[0-9a-fA-F]+ [A-Za-z] ([^ ]+)$")
endif()

set(found "")
foreach(line IN LISTS lines)
    if(NOT line MATCHES "${pattern}")
        message(FATAL_ERROR "unexpected line: ${line}")
    endif()
    list(APPEND found ${CMAKE_MATCH_1})
endforeach()
list(SORT found)

if(NOT found STREQUAL expected)
    message(FATAL_ERROR "the library shows\n  ${found}\nbut should show\n  ${expected}")
endif()
list(LENGTH found count)
message(STATUS "${count} names, as they should be")
