# How the targets of this repository are made. A library lies in <folder>/<Name>/ and is included as <Name/Header.h>.

add_library(mu_strict INTERFACE)
target_compile_options(mu_strict INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
    -Woverloaded-virtual -Wcast-align -Wformat=2 -Werror)

# Results are the same on every machine, and messages name files as the repository does.
add_library(mu_exact INTERFACE)
target_compile_features(mu_exact INTERFACE cxx_std_20)
target_compile_options(mu_exact INTERFACE
    -ffp-contract=off
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
    $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
if(MU_SANITIZE)
    target_compile_options(mu_exact INTERFACE
        -fsanitize=${MU_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
        # The compiler loses track of what a sanitizer's own checks initialise; the other presets keep the warning.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(mu_exact INTERFACE -fsanitize=${MU_SANITIZE})
endif()

# What every target of ours is built with, and nobody else.
function(mu_target_defaults name)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:mu_strict> $<BUILD_INTERFACE:mu_exact>)
    set_target_properties(${name} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
endfunction()

# mu_add_library(<name> SOURCES <file>... [PUBLIC <target>...] [PRIVATE <target>...])
function(mu_add_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    list(TRANSFORM arg_SOURCES PREPEND ${name}/)
    add_library(${name} SHARED ${arg_SOURCES})
    add_library(Mu::${name} ALIAS ${name})
    mu_target_defaults(${name})
    target_compile_features(${name} PUBLIC cxx_std_20)
    if(NOT MU_SANITIZE)
        # A missing arrow between libraries fails the build. The sanitizers' own symbols come with the program.
        target_link_options(${name} PRIVATE LINKER:-z,defs)
    endif()
    target_include_directories(${name} PUBLIC
        $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}> $<INSTALL_INTERFACE:include>)
    target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
    # Installed, the libraries lie side by side and find each other there.
    set_target_properties(${name} PROPERTIES SOVERSION 1 VERSION ${PROJECT_VERSION} INSTALL_RPATH "$ORIGIN")
    install(TARGETS ${name} EXPORT MuTlkHelperTargets)
    install(DIRECTORY ${name} DESTINATION include FILES_MATCHING PATTERN "*.h")
endfunction()

set(MU_CMAKE_DIR ${CMAKE_CURRENT_LIST_DIR})

# mu_add_plugin(<name> SOURCES <file>... [LIBS <target>...])
# A module with tools, of which only the entry is visible.
function(mu_add_plugin name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} MODULE ${arg_SOURCES})
    mu_target_defaults(${name})
    target_link_libraries(${name} PRIVATE Mu::MuTlkHelper ${arg_LIBS})
    target_link_options(${name} PRIVATE -Wl,--version-script=${MU_CMAKE_DIR}/plugin.map)
    set_target_properties(${name} PROPERTIES PREFIX "" LINK_DEPENDS ${MU_CMAKE_DIR}/plugin.map)
endfunction()

# mu_add_tool(<name> SOURCES <file>... [LIBS <target>...])
# A plug-in that goes where the program finds its tools, in the build tree and installed.
set(MU_TOOLS_INSTALL_DIR lib/mutlk/tools)
function(mu_add_tool name)
    mu_add_plugin(${name} ${ARGN})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
    file(RELATIVE_PATH libraries
        ${CMAKE_INSTALL_PREFIX}/${MU_TOOLS_INSTALL_DIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(${name} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tools
        INSTALL_RPATH "$ORIGIN/${libraries}")
    install(TARGETS ${name} LIBRARY DESTINATION ${MU_TOOLS_INSTALL_DIR})
endfunction()
