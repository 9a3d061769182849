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
