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
