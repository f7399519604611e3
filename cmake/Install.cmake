# What a client gets: the shared libraries with their public headers, find_package(tallowmere) and pkg-config; the
# command-line program; the documents. Host programs take the static core from the source tree
# (add_subdirectory): its headers are no stable interface.
include(CMakePackageConfigHelpers)

install(TARGETS tallowmere tallowmere_view EXPORT tallowmere
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/tallowmere DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

if(TALLOWMERE_TOOLS)
    install(TARGETS tallowmere_cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tallowmere)
install(EXPORT tallowmere NAMESPACE tallowmere:: FILE tallowmere-targets.cmake DESTINATION ${package_dir})
configure_package_config_file(cmake/tallowmere-config.cmake.in ${CMAKE_BINARY_DIR}/tallowmere-config.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/tallowmere-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/tallowmere-config.cmake ${CMAKE_BINARY_DIR}/tallowmere-config-version.cmake
    DESTINATION ${package_dir})

foreach(package tallowmere tallowmere_view)
    configure_file(cmake/${package}.pc.in ${CMAKE_BINARY_DIR}/${package}.pc @ONLY)
    install(FILES ${CMAKE_BINARY_DIR}/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR})
