# SPDX-License-Identifier: MIT
# Shared libraries of the device are written in C++ but need no C++ runtime there: no exceptions,
# no run-time types, no guarded statics, and the C compiler links them.
function(orlo_without_cxx_runtime target)
    target_compile_options(${target} PRIVATE
        $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics>)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "SHARED_LIBRARY")
        set_target_properties(${target} PROPERTIES LINKER_LANGUAGE C)
        target_link_options(${target} PRIVATE -Wl,--as-needed)
        if(NOT ORLO_SANITIZE)
            target_link_options(${target} PRIVATE -Wl,--no-undefined)
        endif()
    endif()
endfunction()

# A release is as small as the compiler makes it: what operations cost is the store, the driver and
# the tools. Nothing is ever thrown through the library, so a release has no unwind tables; a
# debugger finds them in the debug information. Reading and running share pages, as with the
# device's own linker.
function(orlo_small_release target)
    include(CheckCXXCompilerFlag)
    include(CheckIPOSupported)
    check_cxx_compiler_flag(-Oz ORLO_HAS_OZ)
    check_ipo_supported(RESULT link_time_optimization OUTPUT ignored LANGUAGES CXX)
    target_compile_options(${target} PRIVATE
        $<$<CONFIG:Release>:$<IF:$<BOOL:${ORLO_HAS_OZ}>,-Oz,-Os> -fno-asynchronous-unwind-tables>)
    target_link_options(${target} PRIVATE $<$<CONFIG:Release>:-Wl,-z,noseparate-code>)
    if(link_time_optimization AND NOT ORLO_SANITIZE)
        set_target_properties(${target} PROPERTIES INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
    endif()
endfunction()
