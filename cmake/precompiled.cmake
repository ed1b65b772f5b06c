# Headers that nearly every source of a target includes are read once. For clang++ only those of programs, and in the
# preset clang none: each file of the library stands alone there, so that a missing include shows. Where people build for
# use nothing is precompiled.
function(kelm_precompile target)
    get_target_property(type ${target} TYPE)
    if(CMAKE_BUILD_TYPE STREQUAL "Debug" AND
       (CMAKE_CXX_COMPILER_ID STREQUAL "GNU" OR (KELM_SANITIZE AND type STREQUAL "EXECUTABLE")))
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()
