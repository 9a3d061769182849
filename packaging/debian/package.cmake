# SPDX-License-Identifier: MIT
# The Debian package for people who build agents or try descriptions; packaging/debian/build makes it.
# One package with everything. Its build is configured for the prefix /usr.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orlovendor)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Vendor library of a dual-radio access point, with a virtual one")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The orlovendor authors <authors@orlovendor.invalid>")
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "The library with its one table of 132 operations, headers, pkg-config file and\n CMake package; orloctl, with which a person calls every operation; a virtual\n access point, in which all of it runs without touching this machine; manual\n pages and an example agent.")
set(CPACK_DEBIAN_PACKAGE_DEPENDS "busybox-static, dash, lua5.1, openssl, tzdata")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
    ${CMAKE_BINARY_DIR}/debian/postinst ${CMAKE_BINARY_DIR}/debian/postrm
    ${CMAKE_SOURCE_DIR}/packaging/debian/triggers)

execute_process(COMMAND date -u -R -d "${ORLO_RELEASE_DATE}"
    OUTPUT_VARIABLE release_time OUTPUT_STRIP_TRAILING_WHITESPACE)
foreach(file IN ITEMS changelog postinst postrm)
    configure_file(packaging/debian/${file}.in ${CMAKE_BINARY_DIR}/debian/${file} @ONLY)
endforeach()
configure_file(${CMAKE_SOURCE_DIR}/CHANGELOG.md ${CMAKE_BINARY_DIR}/debian/news COPYONLY)
orlo_compress(${CMAKE_BINARY_DIR}/debian/changelog)
orlo_compress(${CMAKE_BINARY_DIR}/debian/news)
install(FILES ${CMAKE_BINARY_DIR}/debian/changelog.gz DESTINATION ${CMAKE_INSTALL_DOCDIR}
    RENAME changelog.Debian.gz)
install(FILES ${CMAKE_BINARY_DIR}/debian/news.gz DESTINATION ${CMAKE_INSTALL_DOCDIR}
    RENAME changelog.gz)
install(FILES packaging/debian/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES packaging/debian/lintian-overrides
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME orlovendor)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/links)
file(CREATE_LINK ../../orlovendor/examples ${CMAKE_BINARY_DIR}/links/examples SYMBOLIC)
install(FILES ${CMAKE_BINARY_DIR}/links/examples DESTINATION ${CMAKE_INSTALL_DOCDIR})

include(CPack)
