# Headers, library, package files: find_package(kelm) finds this build tree as well as an install.
include(CMakePackageConfigHelpers)

set(kelm_config_dir ${CMAKE_INSTALL_LIBDIR}/cmake/kelm)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/kelm
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")
install(TARGETS kelm kelm_testing kelm_plain_operator_names EXPORT kelm-targets)
install(EXPORT kelm-targets
    NAMESPACE kelm::
    FILE kelmTargets.cmake
    DESTINATION ${kelm_config_dir})
export(EXPORT kelm-targets
    NAMESPACE kelm::
    FILE ${PROJECT_BINARY_DIR}/kelmTargets.cmake)

configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/kelmConfig.cmake.in
    ${PROJECT_BINARY_DIR}/kelmConfig.cmake
    INSTALL_DESTINATION ${kelm_config_dir})
# Before 1.0 a new minor version may break its users.
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/kelmConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(
    FILES
        ${PROJECT_BINARY_DIR}/kelmConfig.cmake
        ${PROJECT_BINARY_DIR}/kelmConfigVersion.cmake
    DESTINATION ${kelm_config_dir})

# pkg-config: the prefix is told from where the file lies, so that the install may be moved.
file(RELATIVE_PATH kelm_prefix_from_pc
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
# A static library is linked with what it uses, but not with what that uses in turn, as --static would have it.
set(kelm_pc_requires "Requires")
if(BUILD_SHARED_LIBS)
    set(kelm_pc_cflags "-DKELM_SHARED")
    set(kelm_pc_requires "Requires.private")
endif()
foreach(library IN ITEMS kelm kelm-testing)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${library}.pc.in ${PROJECT_BINARY_DIR}/${library}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${library}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

# `cpack` makes a Debian package: library and headers in one, as long as the interface is young.
if(PROJECT_IS_TOP_LEVEL)
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGE_NAME libkelm-dev)
    set(CPACK_PACKAGE_VENDOR kelm)
    set(CPACK_PACKAGE_CONTACT "The kelm developers")
    set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_STRIP_FILES OFF)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "libboost-dev (>= 1.74), libxerces-c-dev (>= 3.2)")
    if(KELM_BUILD_EXAMPLES) # kelm-schema is in it as well
        string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", libsqlite3-0 (>= 3.34)")
    endif()
    include(CPack)
endif()
