# Warnings for everything of this project, the library as well as its tests; included before any target.
add_compile_options(
    -Wall
    -Wextra
    -Wpedantic
    -Wshadow
    -Wconversion
    -Woverloaded-virtual)

if(KELM_WARNINGS_AS_ERRORS)
    add_compile_options(-Werror)
endif()

# What is compiled together g++ takes for headers, in which such names had better not be.
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-subobject-linkage)
endif()
