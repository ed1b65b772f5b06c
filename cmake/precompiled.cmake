# Headers that nearly every source of a target includes are read once.  In the preset clang each file stands alone, so
# that a missing include shows, and where people build for use nothing is precompiled.
function(kelm_precompile target)
    if(CMAKE_BUILD_TYPE STREQUAL "Debug" AND (CMAKE_CXX_COMPILER_ID STREQUAL "GNU" OR KELM_SANITIZE))
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()
