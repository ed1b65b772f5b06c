# Programs with all that a debugger wants to know are linked in a third of the time by lld, where it is there. What is
# built for use is linked by what the system links with.
if(PROJECT_IS_TOP_LEVEL AND CMAKE_BUILD_TYPE STREQUAL "Debug")
    find_program(KELM_LLD ld.lld)
    mark_as_advanced(KELM_LLD)
    if(KELM_LLD)
        add_link_options(-fuse-ld=lld)
    endif()
endif()
