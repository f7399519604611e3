# As Windows writes paths; through Wine (EMULATOR) this machine's files are on drive Z.
function(windows_path result path)
    if(EMULATOR)
        set(path "Z:${path}")
    endif()
    string(REPLACE "/" "\\" path "${path}")
    set(${result} "${path}" PARENT_SCOPE)
endfunction()

# windows_search_path(RESULT FOLDER...): as in PATH.
function(windows_search_path result)
    set(folders "")
    foreach(folder IN LISTS ARGN)
        windows_path(path "${folder}")
        list(APPEND folders "${path}")
    endforeach()
    set(${result} "${folders}" PARENT_SCOPE)
endfunction()
