# Runs the tests of the Python package; see CMakeLists.txt here.
include(${CMAKE_CURRENT_LIST_DIR}/../../windows_paths.cmake)
get_filename_component(common ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)

windows_search_path(modules ${PACKAGE_FOLDER} ${common} ${CMAKE_CURRENT_LIST_DIR})
set(ENV{PYTHONPATH} "${modules}")
set(ENV{PYTHONDONTWRITEBYTECODE} 1)
set(ENV{PYTHONIOENCODING} utf-8) # what the tests read from programs that they start
windows_search_path(libraries ${LIBRARY_FOLDERS})
set(ENV{TALLOWMERE_LIBRARY_PATH} "${libraries}")
windows_path(examples ${EXAMPLES_FOLDER})
set(ENV{TALLOWMERE_EXAMPLES} "${examples}")
set(ENV{TALLOWMERE_VERSION} ${VERSION})

# A process for each file, because the section is there as long as somebody has written in the process.
file(GLOB tests ${common}/test_*.py ${CMAKE_CURRENT_LIST_DIR}/test_*.py)
set(failed FALSE)
foreach(test IN LISTS tests)
    get_filename_component(name ${test} NAME_WE)
    # Standard output is a pipe: what Python asks of a file fails under Wine where Wine has not opened it.
    execute_process(COMMAND ${EMULATOR} ${PYTHON_FOLDER}/python.exe -m unittest ${name}
        RESULT_VARIABLE result OUTPUT_VARIABLE text ERROR_VARIABLE text)
    message("-- ${name}\n${text}")
    if(NOT result EQUAL 0)
        set(failed TRUE)
    endif()
endforeach()
if(failed)
    message(FATAL_ERROR "tests failed")
endif()
