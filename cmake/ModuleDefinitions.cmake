# For linkers of other compilers than the one that built the libraries: the module definition files, and import
# libraries in the form that Visual Studio's linker makes and reads, made of them where llvm-dlltool is there. (MSVC
# makes its own with the library; g++'s linker makes lib*.dll.a, in a longer form.)
set(definitions api/tallowmere.def view/tallowmere_view.def)
install_development(FILES ${definitions} DESTINATION ${CMAKE_INSTALL_LIBDIR})

find_program(TALLOWMERE_LLVM_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14)
if(TALLOWMERE_LLVM_DLLTOOL AND NOT MSVC)
    foreach(definition IN LISTS definitions)
        cmake_path(GET definition STEM name)
        set(import_library ${CMAKE_BINARY_DIR}/${name}.lib)
        add_custom_command(OUTPUT ${import_library}
            COMMAND ${TALLOWMERE_LLVM_DLLTOOL} -m i386:x86-64 -d ${PROJECT_SOURCE_DIR}/${definition}
                -D $<TARGET_FILE_NAME:${name}> -l ${import_library}
            DEPENDS ${definition} VERBATIM)
        list(APPEND import_libraries ${import_library})
    endforeach()
    add_custom_target(msvc_import_libraries ALL DEPENDS ${import_libraries})
    install_development(FILES ${import_libraries} DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()
