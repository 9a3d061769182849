# What agents build against: the library, its headers, a pkg-config file and a CMake package; and the
# manual pages, the completion and the licence.
include(CMakePackageConfigHelpers)

if(ORLO_UCI_EMBEDDED OR ORLO_LIBDEBUG_EMBEDDED)
    set_target_properties(orlovendor PROPERTIES INSTALL_RPATH "$ORIGIN/orlovendor")
endif()
install(TARGETS orlovendor LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/orlo DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

configure_package_config_file(cmake/install/OrloVendorConfig.cmake.in
    ${CMAKE_BINARY_DIR}/OrloVendorConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrloVendor
    PATH_VARS CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_INCLUDEDIR ORLO_PRIVATE_DIR)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/OrloVendorConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/OrloVendorConfig.cmake
    ${CMAKE_BINARY_DIR}/OrloVendorConfigVersion.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrloVendor)

configure_file(cmake/install/orlovendor.pc.in ${CMAKE_BINARY_DIR}/orlovendor.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/orlovendor.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
