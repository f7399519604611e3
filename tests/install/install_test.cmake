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
    # Clients in C++ need the compiler's run-time libraries, which lie where the compiler says.
    foreach(library libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CXX_COMPILER} -print-file-name=${library} OUTPUT_VARIABLE found
                        OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        cmake_path(GET found PARENT_PATH folder)
        set(ENV{WINEPATH} "$ENV{WINEPATH};${folder}")
    endforeach()
endif()

set(compilers -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_CXX_COMPILER=${CXX_COMPILER})
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/client -B ${WORK_DIR}/find_package -G Ninja ${toolchain}
    -DCMAKE_PREFIX_PATH=${prefix} ${compilers} -DCMAKE_C_FLAGS=${SANITIZE} -DCMAKE_CXX_FLAGS=${SANITIZE})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/find_package)
foreach(client client cpp_client view_client)
    run(${EMULATOR} ${WORK_DIR}/find_package/${client}${suffix})
endforeach()

find_program(PKG_CONFIG pkg-config)
if(NOT PKG_CONFIG)
    message(FATAL_ERROR "pkg-config is missing: run scripts/setup")
endif()
set(ENV{PKG_CONFIG_LIBDIR} ${prefix}/${LIBDIR}/pkgconfig)
foreach(package tallowmere tallowmere_view)
    execute_process(COMMAND ${PKG_CONFIG} --cflags --libs ${package} OUTPUT_VARIABLE ${package}_flags
                    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(${package}_flags)
endforeach()

# build_and_run(NAME PACKAGE SOURCE): a client built through pkg-config.
function(build_and_run name package source)
    set(compiler ${C_COMPILER} -std=c11)
    if(source MATCHES "\\.cpp$")
        set(compiler ${CXX_COMPILER} -std=c++17)
    endif()
    separate_arguments(sanitize UNIX_COMMAND "${SANITIZE}")
    run(${compiler} ${sanitize} ${source} ${${package}_flags} -o ${WORK_DIR}/${name}${suffix})
    run(${EMULATOR} ${WORK_DIR}/${name}${suffix})
endfunction()
build_and_run(pkg_config_client tallowmere ${SOURCE_DIR}/client/client.c)
build_and_run(pkg_config_cpp_client tallowmere ${SOURCE_DIR}/client/cpp_client.cpp)
build_and_run(pkg_config_view_client tallowmere_view ${SOURCE_DIR}/client/view_client.cpp)

# An older standard is told so, and not by errors of the standard library.
foreach(client cpp_client view_client)
    execute_process(COMMAND ${CXX_COMPILER} -std=c++14 -fsyntax-only -I${prefix}/include ${SOURCE_DIR}/client/${client}.cpp
                    RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE errors)
    string(REGEX MATCH "error: [^\n]*" first "${errors}")
    if(result EQUAL 0 OR NOT first MATCHES "needs C\\+\\+17")
        message(FATAL_ERROR "C++14 is answered by: ${errors}")
    endif()
endforeach()

# find_example(DOCUMENT INFO RESULT): the first block of a document whose opening fence says INFO.
function(find_example document info result)
    file(READ ${document} text)
    string(REGEX MATCH "```${info}\n([^`]+)```" match "${text}")
    if(NOT match)
        message(FATAL_ERROR "${document} shows no ${info}")
    endif()
    # A list separator of CMake's must not get lost in the code.
    string(REPLACE "\;" ";" code "${CMAKE_MATCH_1}")
    set(${result} "${code}" PARENT_SCOPE)
endfunction()

# run_example(DOCUMENT LANGUAGE PACKAGE): the first client that a document shows is a client that works.
function(run_example document language package)
    find_example(${document} ${language} code)
    cmake_path(GET document STEM name)
    file(WRITE ${WORK_DIR}/${name}_example.${language} "${code}")
    build_and_run(${name}_example_${language} ${package} ${WORK_DIR}/${name}_example.${language})
endfunction()
run_example(${README} c tallowmere)
run_example(${DOCUMENTS}/view.md c tallowmere_view)
run_example(${DOCUMENTS}/view.md cpp tallowmere_view)
run_example(${DOCUMENTS}/functions.md c tallowmere)

# The first project of a reader: both clients of the document, by its own CMakeLists.txt, print what it says.
set(document ${DOCUMENTS}/getting-started.md)
set(project ${WORK_DIR}/getting-started)
find_example(${document} cmake code)
file(WRITE ${project}/CMakeLists.txt "${code}")
foreach(language c cpp)
    find_example(${document} ${language} code)
    file(WRITE ${project}/client.${language} "${code}")
endforeach()
run(${CMAKE_COMMAND} -S ${project} -B ${project}/build -G Ninja ${toolchain}
    -DCMAKE_PREFIX_PATH=${prefix} ${compilers} -DCMAKE_C_FLAGS=${SANITIZE} -DCMAKE_CXX_FLAGS=${SANITIZE})
run(${CMAKE_COMMAND} --build ${project}/build)
foreach(language c cpp)
    find_example(${document} "text ${language}" expected)
    execute_process(COMMAND ${EMULATOR} ${project}/build/${language}_client${suffix} OUTPUT_VARIABLE printed
                    COMMAND_ERROR_IS_FATAL ANY)
    string(REPLACE "\r\n" "\n" printed "${printed}")
    if(NOT printed STREQUAL expected)
        message(FATAL_ERROR "the ${language} client of ${document} printed\n${printed}and not\n${expected}")
    endif()
endforeach()
run_example(${document} c tallowmere)
run_example(${document} cpp tallowmere)
