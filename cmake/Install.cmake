# SPDX-License-Identifier: MIT
# What agents build against: the library, its headers, a pkg-config file and a CMake package; and what
# people read: documentation, manual pages, completion of orloctl.
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

# The manual of each program that is built, compressed as manuals are.
set(manuals "")
if(ORLO_ORLOCTL)
    list(APPEND manuals orloctl)
endif()
if(ORLO_UCI_EMBEDDED)
    list(APPEND manuals uci)
endif()
if(ORLO_DEVICE)
    list(APPEND manuals virtual-ap)
endif()
foreach(name IN LISTS manuals)
    configure_file(docs/man/${name}.1.in ${CMAKE_BINARY_DIR}/man/${name}.1 @ONLY)
    orlo_compress(${CMAKE_BINARY_DIR}/man/${name}.1)
    install(FILES ${CMAKE_BINARY_DIR}/man/${name}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()

set(ORLO_ZSH_COMPLETION_DIR ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
    CACHE STRING "Where zsh looks for completion")
set(completion ${CMAKE_SOURCE_DIR}/tools/orloctl/completion)
if(ORLO_ORLOCTL AND EXISTS ${completion}/orloctl.bash)
    install(FILES ${completion}/orloctl.bash
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME orloctl)
endif()
if(ORLO_ORLOCTL AND EXISTS ${completion}/_orloctl)
    install(FILES ${completion}/_orloctl DESTINATION ${ORLO_ZSH_COMPLETION_DIR})
endif()

file(GLOB pages ${CMAKE_SOURCE_DIR}/docs/*.md)
install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs)
install(DIRECTORY docs/performance DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs)
