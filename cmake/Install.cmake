# What a client gets, in four components: the shared libraries (library, view_library), what building against them
# takes (development), the command-line program (tools). The packages of scripts/package are made of these.
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
install_development(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install_development(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR})

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
