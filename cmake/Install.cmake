# What a client gets, in components: the shared libraries (library, view_library), what building against them takes,
# documents and examples (development), the command-line program (tools), the packages for other languages (python,
# node). The packages of scripts/package are made of these.
# Host programs take the static core from the source tree (add_subdirectory): its headers are no stable interface.
include(CMakePackageConfigHelpers)

# install_library(TARGET COMPONENT): what runs into COMPONENT, what is linked against into development.
function(install_library target component)
    install(TARGETS ${target} EXPORT tallowmere
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component} NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
endfunction()
install_library(tallowmere library)
install_library(tallowmere_view view_library)

if(TALLOWMERE_TOOLS)
    install(TARGETS tallowmere_cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
endif()

# install_development(TYPE FILE ... DESTINATION FOLDER)
function(install_development)
    install(${ARGN} COMPONENT development)
endfunction()
install_development(DIRECTORY include/tallowmere DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
# As in the source tree, so that the links among them hold.
install_development(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install_development(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tallowmere)
install_development(EXPORT tallowmere NAMESPACE tallowmere:: FILE tallowmere-targets.cmake DESTINATION ${package_dir})
configure_package_config_file(cmake/tallowmere-config.cmake.in ${CMAKE_BINARY_DIR}/tallowmere-config.cmake
    INSTALL_DESTINATION ${package_dir} PATH_VARS CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/tallowmere-config-version.cmake COMPATIBILITY SameMajorVersion)
install_development(FILES ${CMAKE_BINARY_DIR}/tallowmere-config.cmake ${CMAKE_BINARY_DIR}/tallowmere-config-version.cmake
    DESTINATION ${package_dir})

# From pkg-config's folder up to the prefix: further where libraries lie in a folder of the architecture.
set(pkg_config_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pkg_config /prefix/${pkg_config_dir} /prefix)
string(REGEX REPLACE "/$" "" prefix_from_pkg_config ${prefix_from_pkg_config})
foreach(package tallowmere tallowmere_view)
    configure_file(cmake/${package}.pc.in ${CMAKE_BINARY_DIR}/${package}.pc @ONLY)
    install_development(FILES ${CMAKE_BINARY_DIR}/${package}.pc DESTINATION ${pkg_config_dir})
endforeach()

if(WIN32)
    include(ModuleDefinitions)
endif()

# The packages for Python and Node, as pip and npm take them: the same files for every system.
set(TALLOWMERE_LANGUAGE_PACKAGES "" CACHE PATH
    "Folder of what packaging/python/make and packaging/node/make have made, to be installed as well")
if(TALLOWMERE_LANGUAGE_PACKAGES)
    set(wheel ${TALLOWMERE_LANGUAGE_PACKAGES}/tallowmere-${PROJECT_VERSION}-py3-none-any.whl)
    set(npm_package ${TALLOWMERE_LANGUAGE_PACKAGES}/tallowmere-${PROJECT_VERSION}.tgz)
    if(WIN32) # in a folder of the installation's own
        install(FILES ${wheel} DESTINATION python COMPONENT python)
        install(FILES ${npm_package} DESTINATION node COMPONENT node)
    else()
        install(FILES ${wheel} DESTINATION ${CMAKE_INSTALL_DATADIR}/tallowmere COMPONENT python)
        install(FILES ${npm_package} DESTINATION ${CMAKE_INSTALL_DATADIR}/tallowmere COMPONENT node)
        # Unpacked where the distribution's own Python looks. RECORD is for pip, which must not take these files away.
        set(unpacked_wheel ${CMAKE_BINARY_DIR}/wheel)
        file(REMOVE_RECURSE ${unpacked_wheel})
        file(ARCHIVE_EXTRACT INPUT ${wheel} DESTINATION ${unpacked_wheel})
        install(DIRECTORY ${unpacked_wheel}/ DESTINATION lib/python3/dist-packages COMPONENT python
            PATTERN RECORD EXCLUDE)
    endif()
endif()
