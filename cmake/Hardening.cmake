# SPDX-License-Identifier: MIT
# What keeps a mistake with memory from being of use to anybody: checked buffers, guarded stacks,
# tables that are read-only once loaded, no executable data, programs at random addresses.
# tests/hardening reads from the built files that it is there.
include(CheckPIESupported)
check_pie_supported()

add_compile_options(-fstack-protector-strong)
add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)

# Needs optimisation; sanitizers check more, and do not see what it replaces.
if(NOT ORLO_SANITIZE)
    add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()
