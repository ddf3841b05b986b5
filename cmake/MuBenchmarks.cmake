# mu_add_benchmark(<name> SOURCES <file>... [LIBS <target>...])
# An executable of benchmarks. Each proves its result before it is timed.
find_package(benchmark 1.7 REQUIRED)

function(mu_add_benchmark name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    mu_target_defaults(${name})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/Tests)
    target_link_libraries(${name} PRIVATE ${arg_LIBS} benchmark::benchmark_main)
endfunction()
