# A user's project would have to be sanitized too.
if(MU_SANITIZE)
    return()
endif()

set(package_check CheckPackage
    ${CMAKE_COMMAND} ${PROJECT_BINARY_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/Consumer ${CMAKE_GENERATOR} ${CMAKE_CXX_COMPILER})
structure_test(A_project_outside_the_tree_uses_the_installed_package ${package_check} "Count: 21")
structure_twin(A_consumer_with_another_result_is_reported
    REPORTS "printed 'Count: 21' instead of 'Count: 22'"
    COMMAND ${package_check} "Count: 22")
set_tests_properties(
    Repository.A_project_outside_the_tree_uses_the_installed_package
    Repository.A_consumer_with_another_result_is_reported
    PROPERTIES RESOURCE_LOCK installation)
