# KELM_SANITIZE names what to build with. The flags are part of the library's interface: a program that links
# a sanitized library must be linked with the same runtime.
function(kelm_sanitize target)
    if(NOT KELM_SANITIZE)
        return()
    endif()
    set(flags -fsanitize=${KELM_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(${target} PUBLIC ${flags})
    target_link_options(${target} PUBLIC ${flags})
endfunction()

# g++ sees uninitialised reads in the code that its own sanitizers put in.
if(KELM_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-maybe-uninitialized)
endif()
