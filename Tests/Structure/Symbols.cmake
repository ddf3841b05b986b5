# What the built libraries show and start. A sanitizer adds symbols and initialisers of its own.
if(MU_SANITIZE)
    return()
endif()

# structure_library(<name> <source>): a small library, built as ours are.
function(structure_library name source)
    add_library(${name} SHARED ${source})
    mu_target_defaults(${name})
    set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR})
endfunction()

set(platform_files ${compiled_platform})
list(TRANSFORM platform_files REPLACE "(.+)" "$<TARGET_FILE:\\1>")

structure_test(The_library_exports_what_is_its_own CheckExports
    ${CMAKE_NM} $<TARGET_FILE:MuTlkHelper> Mu TaPlugin_SetHostInfo)
structure_library(StructureTwinExports ${twins}/Exports.cpp)
structure_twin(Foreign_exports_are_reported
    REPORTS
        "TaPlugin_SetHostInfo is not exported"
        "exports Plain_Foreign"
        "exports _Z4Barev"
        "exports _ZN5Other7ForeignEv"
    COMMAND CheckExports ${CMAKE_NM} $<TARGET_FILE:StructureTwinExports> Mu TaPlugin_SetHostInfo)

structure_test(Every_declared_type_object_is_exported CheckTypeObjects
    ${CMAKE_NM} ${PROJECT_SOURCE_DIR}/Platform ${platform_files})
structure_twin(A_type_object_without_definition_is_reported
    REPORTS "zMissing is declared, but zApi does not export it"
    COMMAND CheckTypeObjects ${CMAKE_NM} ${twins}/TypeObjects $<TARGET_FILE:zApi>)

# What is inlined depends on the optimiser: the list is that of the build that users run.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
    structure_test(The_library_calls_listed_operations_only CheckCalls
        ${CMAKE_NM} $<TARGET_FILE:MuTlkHelper> ${PROJECT_SOURCE_DIR}/Docs/PlatformOperations.txt)
    structure_twin(Calls_and_a_list_that_differ_are_reported
        REPORTS "xzCastClass_ObjectIs is called and not listed" "zNever_Called is listed"
        COMMAND CheckCalls ${CMAKE_NM} $<TARGET_FILE:MuTlkHelper> ${twins}/operations.txt)
endif()

# Without optimisation the compiler may leave to the start what it can do beforehand.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
    structure_library(StructureTwinEmpty ${twins}/Empty.cpp)
    structure_library(StructureTwinStatic ${twins}/StaticInitialiser.cpp)
    # The headers of asio make objects of their own at load, in the one source that makes the thread pool.
    set(started ${platform_files})
    list(TRANSFORM started REPLACE "(.+:zApi>)" "1@\\1")
    structure_test(No_library_runs_code_when_it_is_loaded CheckStaticInitialisers
        ${CMAKE_READELF} $<TARGET_FILE:StructureTwinEmpty> $<TARGET_FILE:MuTlkHelper> ${started})
    structure_twin(Code_that_runs_at_load_is_reported
        REPORTS "starts 1 things when it is loaded, allowed 0"
        COMMAND CheckStaticInitialisers
            ${CMAKE_READELF} $<TARGET_FILE:StructureTwinEmpty> $<TARGET_FILE:StructureTwinStatic>)
endif()
