# Every public header compiles alone, and twice in a row: one unit per header, built with everything else.

# structure_headers(<root> <pattern>...)
# Appends a unit for each header of the root that a pattern names to `units`. A header is included by its path from the root.
function(structure_headers root)
    foreach(pattern IN LISTS ARGN)
        file(GLOB headers RELATIVE ${root} CONFIGURE_DEPENDS ${root}/${pattern})
        if(NOT headers)
            message(FATAL_ERROR "${root}/${pattern}: no header found")
        endif()
        foreach(header IN LISTS headers)
            set(unit ${CMAKE_CURRENT_BINARY_DIR}/Headers/${header}.cpp)
            file(CONFIGURE OUTPUT ${unit} CONTENT "#include <${header}>\n#include <${header}>\n")
            list(APPEND units ${unit})
        endforeach()
    endforeach()
    set(units ${units} PARENT_SCOPE)
endfunction()

set(units)
foreach(library IN LISTS platform)
    structure_headers(${PROJECT_SOURCE_DIR}/Platform/${library} ${library}/*.h)
endforeach()
structure_headers(${PROJECT_SOURCE_DIR}/Libs/MuTlkHelper MuTlkHelper/*.h)
if(TARGET MuHost)
    structure_headers(${PROJECT_SOURCE_DIR} Host/*.h)
endif()

# A sanitizer says nothing about a header.
if(NOT MU_SANITIZE)
    add_library(StructureHeaders OBJECT ${units})
    mu_target_defaults(StructureHeaders)
    target_compile_options(StructureHeaders PRIVATE -O0)
    target_link_libraries(StructureHeaders PRIVATE
        ${platform} MuTlkHelper $<TARGET_NAME_IF_EXISTS:MuHost>)
endif()

add_test(NAME Repository.A_header_that_needs_another_is_reported
    COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_SOURCE_DIR}/MustReport.py "HeaderThatNeedsAnother.h:7"
        -- ${CMAKE_CXX_COMPILER} -std=c++20 -fsyntax-only -w -x c++ ${twins}/HeaderThatNeedsAnother.h)
