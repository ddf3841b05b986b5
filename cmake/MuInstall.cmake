# The package by which a tool outside this tree finds the library: find_package(MuTlkHelper), then Mu::MuTlkHelper.
include(CMakePackageConfigHelpers)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/MuTlkHelper)
configure_package_config_file(
    ${CMAKE_CURRENT_LIST_DIR}/MuTlkHelperConfig.cmake.in ${PROJECT_BINARY_DIR}/MuTlkHelperConfig.cmake
    INSTALL_DESTINATION ${package})
# Before version 1 a minor version may break what stood.
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/MuTlkHelperConfigVersion.cmake COMPATIBILITY SameMinorVersion)

install(EXPORT MuTlkHelperTargets NAMESPACE Mu:: DESTINATION ${package})
install(FILES
    ${PROJECT_BINARY_DIR}/MuTlkHelperConfig.cmake
    ${PROJECT_BINARY_DIR}/MuTlkHelperConfigVersion.cmake
    DESTINATION ${package})
