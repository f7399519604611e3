# Run by the test document_host: the host of docs/host.md prints what it says, and its project can be configured.
cmake_minimum_required(VERSION 3.25)
foreach(kind runtime config data)
    string(TOUPPER ${kind} variable)
    file(REMOVE_RECURSE ${FOLDER}/own/${kind})
    file(MAKE_DIRECTORY ${FOLDER}/own/${kind})
    file(CHMOD ${FOLDER}/own/${kind} DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
endforeach()
set(ENV{XDG_RUNTIME_DIR} ${FOLDER}/own/runtime)
set(ENV{XDG_CONFIG_HOME} ${FOLDER}/own/config)
set(ENV{XDG_DATA_HOME} ${FOLDER}/own/data)

execute_process(COMMAND ${EMULATOR} ${PROGRAM} INPUT_FILE ${FOLDER}/input.txt OUTPUT_VARIABLE printed
                COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\r\n" "\n" printed "${printed}")
file(READ ${FOLDER}/output.txt expected)
if(NOT printed STREQUAL expected)
    message(FATAL_ERROR "the host printed\n${printed}and not\n${expected}")
endif()

# Configured only: its build is that of the core, which all tests here use.
file(REMOVE_RECURSE ${FOLDER}/build ${FOLDER}/tallowmere)
file(CREATE_LINK ${SOURCE} ${FOLDER}/tallowmere SYMBOLIC)
if(TOOLCHAIN)
    set(toolchain -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -S ${FOLDER} -B ${FOLDER}/build -G Ninja ${toolchain}
    -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_CXX_COMPILER=${CXX_COMPILER} COMMAND_ERROR_IS_FATAL ANY)
