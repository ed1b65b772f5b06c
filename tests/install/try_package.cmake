# Builds and runs the outside project in a fresh directory; with `install` against an install made there,
# else against the build tree itself.
function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ECHO STDOUT RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed with ${result}: ${ARGV}")
    endif()
endfunction()

# The program runs where it was put, and its pages lie where man and the shells look for them.
function(try_tool prefix)
    run(${prefix}/bin/kelm-schema --version)
    foreach(page IN ITEMS man/man1/kelm-schema.1 bash-completion/completions/kelm-schema
            zsh/site-functions/_kelm-schema fish/vendor_completions.d/kelm-schema.fish)
        file(READ ${prefix}/share/${page} content)
        if(NOT content MATCHES "kelm")
            message(FATAL_ERROR "nothing about kelm in ${page}")
        endif()
    endforeach()
endfunction()

file(REMOVE_RECURSE ${scratch})
file(MAKE_DIRECTORY ${scratch})

if(install)
    run(${CMAKE_COMMAND} --install ${build} --prefix ${scratch}/prefix)
    if(with_tool)
        try_tool(${scratch}/prefix)
    endif()
    set(where -D CMAKE_PREFIX_PATH=${scratch}/prefix -D expected_prefix=${scratch}/prefix)
else()
    set(where -D kelm_DIR=${build} -D expected_prefix=${build})
endif()

run(${CMAKE_COMMAND} -S ${outside} -B ${scratch}/build -G ${generator}
    -D CMAKE_BUILD_TYPE=${build_type}
    -D CMAKE_CXX_COMPILER=${compiler}
    "-DCMAKE_CXX_FLAGS=${flags}"
    ${where})
run(${CMAKE_COMMAND} --build ${scratch}/build)
run(${scratch}/build/outside)
run(${scratch}/build/outside_laws)

# The same programs by what pkg-config tells of the install.
function(try_pkg_config library source)
    file(GLOB_RECURSE pc ${scratch}/prefix/${library}.pc)
    get_filename_component(pc_dir ${pc} DIRECTORY)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pc_dir} ${pkg_config} --cflags --libs ${library}
        OUTPUT_VARIABLE told OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(told UNIX_COMMAND "${told}")
    separate_arguments(flags UNIX_COMMAND "${flags}")
    run(${compiler} ${flags} -std=c++20 ${outside}/${source} ${told} -o ${scratch}/by_pkg_config_${library})
endfunction()

if(pkg_config)
    try_pkg_config(kelm main.cpp)
    try_pkg_config(kelm-testing laws.cpp)
endif()
