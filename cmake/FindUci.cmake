# SPDX-License-Identifier: MIT
# Finds an installed libuci: Uci_FOUND, Uci_LIBRARY, Uci_INCLUDE_DIR and the target Uci::uci.
find_path(Uci_INCLUDE_DIR uci.h)
find_library(Uci_LIBRARY uci)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Uci
    REQUIRED_VARS Uci_LIBRARY Uci_INCLUDE_DIR
    FAIL_MESSAGE "libuci is not installed (uci.h and libuci.so). ORLO_UCI=embedded builds our own")
mark_as_advanced(Uci_INCLUDE_DIR Uci_LIBRARY)

if(Uci_FOUND AND NOT TARGET Uci::uci)
    add_library(Uci::uci UNKNOWN IMPORTED)
    set_target_properties(Uci::uci PROPERTIES
        IMPORTED_LOCATION "${Uci_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${Uci_INCLUDE_DIR}")
endif()
