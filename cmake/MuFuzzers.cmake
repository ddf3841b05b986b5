if(MU_FUZZ)
    add_custom_target(mu_fuzzers)
endif()

# mu_add_fuzz_program(<name> SOURCES <file>... [LIBS <target>...] [DEFINES <definition>...])
# A program that is built with the fuzzers, such as <name>Seeds, which writes first inputs to a folder.
function(mu_add_fuzz_program name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS;DEFINES" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    mu_target_defaults(${name})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/Tests ${PROJECT_SOURCE_DIR}/Fuzz)
    target_compile_definitions(${name} PRIVATE ${arg_DEFINES})
    target_link_libraries(${name} PRIVATE ${arg_LIBS})
    if(MU_FUZZ)
        add_dependencies(mu_fuzzers ${name})
    endif()
endfunction()

# mu_add_fuzzer(<name>Fuzz SOURCES <file>... [LIBS <target>...] [DEFINES <definition>...])
# A fuzzer, made from an entry LLVMFuzzerTestOneInput. Its inputs stand in Corpus/<name> beside it, its words, if any, in
# <name>.dict. With MU_FUZZ it is linked with the engine that looks for new inputs; otherwise with a driver that replays
# the corpus as a test, so that harness and corpus keep up with the code in every build.
function(mu_add_fuzzer name)
    mu_add_fuzz_program(${name} ${ARGN})
    if(MU_FUZZ)
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
        return()
    endif()
    target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/Fuzz/Support/Replay.cpp)
    string(REGEX REPLACE "Fuzz$" "" subject ${name})
    add_test(NAME Fuzz.${subject}_reads_its_corpus_without_a_finding
        COMMAND ${name} ${CMAKE_CURRENT_SOURCE_DIR}/Corpus/${subject})
    set_tests_properties(Fuzz.${subject}_reads_its_corpus_without_a_finding PROPERTIES LABELS Fuzz TIMEOUT 300)
endfunction()
