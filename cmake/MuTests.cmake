# mu_add_test(<name> SOURCES <file>... [LIBS <target>...] [DEFINES <definition>...] [LABELS <label>...])
# An executable of tests, each registered on its own.
include(GoogleTest)
find_package(GTest 1.12 REQUIRED)

function(mu_add_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS;DEFINES;LABELS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    mu_target_defaults(${name})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/Tests)
    target_compile_definitions(${name} PRIVATE ${arg_DEFINES})
    target_link_libraries(${name} PRIVATE ${arg_LIBS} GTest::gmock GTest::gtest_main)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300 LABELS "${arg_LABELS}")
endfunction()
