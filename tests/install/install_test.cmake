# Run by the test install_test; see CMakeLists.txt here.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "failed (${result}): ${command}\n${output}")
    endif()
    message(STATUS "${output}")
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

# A section, settings and data folder of the test's own.
foreach(folder run config data)
    file(MAKE_DIRECTORY ${WORK_DIR}/${folder})
    file(CHMOD ${WORK_DIR}/${folder} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
endforeach()
set(ENV{XDG_RUNTIME_DIR} ${WORK_DIR}/run)
set(ENV{XDG_CONFIG_HOME} ${WORK_DIR}/config)
set(ENV{XDG_DATA_HOME} ${WORK_DIR}/data)
set(ENV{LD_LIBRARY_PATH} ${prefix}/${LIBDIR})
set(ENV{WINEPATH} ${prefix}/${BINDIR})

set(suffix "")
if(TOOLCHAIN)
    set(suffix .exe)
    set(toolchain -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN})
endif()

run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/client -B ${WORK_DIR}/find_package -G Ninja ${toolchain}
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_C_FLAGS=${SANITIZE})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/find_package)
run(${EMULATOR} ${WORK_DIR}/find_package/client${suffix})

find_program(PKG_CONFIG pkg-config)
if(NOT PKG_CONFIG)
    message(FATAL_ERROR "pkg-config is missing: run scripts/setup")
endif()
set(ENV{PKG_CONFIG_LIBDIR} ${prefix}/${LIBDIR}/pkgconfig)
execute_process(COMMAND ${PKG_CONFIG} --cflags --libs tallowmere OUTPUT_VARIABLE flags
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags)
run(${C_COMPILER} -std=c11 ${SANITIZE} ${SOURCE_DIR}/client/client.c ${flags} -o ${WORK_DIR}/pkg_config_client${suffix})
run(${EMULATOR} ${WORK_DIR}/pkg_config_client${suffix})

# The client that the README shows is a client that works.
file(READ ${README} readme)
string(REGEX MATCH "```c\n([^`]+)```" match "${readme}")
if(NOT match)
    message(FATAL_ERROR "${README} shows no C client")
endif()
# A list separator of CMake's must not get lost in the code.
string(REPLACE "\;" ";" code "${CMAKE_MATCH_1}")
file(WRITE ${WORK_DIR}/readme_client.c "${code}")
run(${C_COMPILER} -std=c11 ${SANITIZE} ${WORK_DIR}/readme_client.c ${flags} -o ${WORK_DIR}/readme_client${suffix})
run(${EMULATOR} ${WORK_DIR}/readme_client${suffix})
