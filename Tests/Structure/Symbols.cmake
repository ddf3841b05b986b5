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

# structure_objects(<name> <source>...): sources with what the library has, compiled without optimisation.
function(structure_objects name)
    add_library(${name} OBJECT ${ARGN})
    mu_target_defaults(${name})
    target_compile_options(${name} PRIVATE -O0)
    target_compile_definitions(${name} PRIVATE $<TARGET_PROPERTY:MuTlkHelper,COMPILE_DEFINITIONS>)
    target_include_directories(${name} PRIVATE $<TARGET_PROPERTY:MuTlkHelper,INCLUDE_DIRECTORIES>)
    target_link_libraries(${name} PRIVATE $<TARGET_PROPERTY:MuTlkHelper,LINK_LIBRARIES>)
endfunction()

# What is inlined depends on the optimiser: the list is that of the build that users run.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
    get_target_property(library_folder MuTlkHelper SOURCE_DIR)
    get_target_property(library_sources MuTlkHelper SOURCES)
    list(TRANSFORM library_sources PREPEND ${library_folder}/)
    structure_objects(StructureLibraryObjects ${library_sources})
    structure_test(The_library_uses_listed_operations_only CheckCalls
        ${CMAKE_NM} $<TARGET_FILE:MuTlkHelper> ${PROJECT_SOURCE_DIR}/Docs/PlatformOperations.txt
        "$<TARGET_OBJECTS:StructureLibraryObjects>")
    structure_objects(StructureTwinInline ${twins}/InlineUser.cpp)
    structure_twin(Uses_and_a_list_that_differ_are_reported
        REPORTS
            "xzCastClass_ObjectIs is called and not listed"
            "zArrayList_Add is inline, used and not listed"
            "xzSerializer_WritePrimitives is inline, used and not listed"
            "zM3dTransform2d_Apply is inline, used and not listed"
            "Mu::Vision::RefFrame::Apply is inline, used and not listed"
            "Mu::Vision::IsPointInAnnularSector is inline, used and not listed"
            "zNever_Called is listed in .* and not used"
        COMMAND CheckCalls ${CMAKE_NM} $<TARGET_FILE:MuTlkHelper> ${twins}/operations.txt
            $<TARGET_OBJECTS:StructureTwinInline>)
endif()

find_program(MU_LDD ldd REQUIRED)
structure_test(Libraries_name_all_that_they_need_and_bind_nothing_at_once CheckBinding
    ${CMAKE_READELF} ${MU_LDD} $<TARGET_FILE:MuTlkHelper> ${platform_files})
structure_library(StructureTwinBinding ${twins}/Binding.cpp)
target_link_options(StructureTwinBinding PRIVATE LINKER:-Bsymbolic)
structure_twin(A_missing_name_and_binding_at_once_are_reported
    REPORTS "binds its own names at once" "MissingEverywhere\\S* is in none of the libraries"
    COMMAND CheckBinding ${CMAKE_READELF} ${MU_LDD} $<TARGET_FILE:StructureTwinBinding>)

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
