# SPDX-License-Identifier: MIT
# Where things are installed. The library is public. Programs, and the stand-ins of platform/ that
# they need, lie together in a folder of their own: the virtual access point is found beside the
# program that enters it, and nobody else's libuci or libdebug is in the way. Links in bin/ lead
# there. Without the virtual access point, as on the device itself, programs are plain ones in bin/.
include(GNUInstallDirs)

set(ORLO_PRIVATE_DIR ${CMAKE_INSTALL_LIBDIR}/orlovendor)
set(ORLO_DATA_DIR ${CMAKE_INSTALL_DATADIR}/orlovendor)
file(RELATIVE_PATH ORLO_BIN_TO_LIB /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
file(RELATIVE_PATH ORLO_BIN_TO_PRIVATE /${CMAKE_INSTALL_BINDIR} /${ORLO_PRIVATE_DIR})
file(RELATIVE_PATH ORLO_PRIVATE_TO_DATA /${ORLO_PRIVATE_DIR} /${ORLO_DATA_DIR})
file(RELATIVE_PATH ORLO_LIB_TO_PREFIX /${CMAKE_INSTALL_LIBDIR} /)

# Installs a program under the name that it is built with.
function(orlo_install_program target)
    if(NOT ORLO_DEVICE)
        set_target_properties(${target} PROPERTIES
            INSTALL_RPATH "$ORIGIN/${ORLO_BIN_TO_LIB};$ORIGIN/${ORLO_BIN_TO_PRIVATE}")
        install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
        return()
    endif()
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/..;$ORIGIN")
    install(TARGETS ${target} RUNTIME DESTINATION ${ORLO_PRIVATE_DIR})
    get_target_property(name ${target} OUTPUT_NAME)
    if(NOT name)
        set(name ${target})
    endif()
    set(link ${CMAKE_BINARY_DIR}/links/${name})
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/links)
    file(CREATE_LINK ${ORLO_BIN_TO_PRIVATE}/${name} ${link} SYMBOLIC)
    install(FILES ${link} DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()

# Installs a stand-in that an access point's own library replaces.
function(orlo_install_stand_in target)
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS ${target} LIBRARY DESTINATION ${ORLO_PRIVATE_DIR})
endfunction()

# Makes FILE.gz, the same each time.
find_program(GZIP gzip REQUIRED)
function(orlo_compress file)
    execute_process(COMMAND ${GZIP} -9nkf ${file} RESULT_VARIABLE failed)
    if(failed)
        message(FATAL_ERROR "Could not compress ${file}")
    endif()
endfunction()
