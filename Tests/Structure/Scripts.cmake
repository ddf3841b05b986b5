find_program(MU_SHELLCHECK shellcheck)
if(NOT MU_SHELLCHECK)
    return()
endif()

add_test(NAME Repository.Scripts_are_clean
    COMMAND ${MU_SHELLCHECK} --external-sources --source-path=SCRIPTDIR
        ${PROJECT_SOURCE_DIR}/Scripts/demo.sh
        ${PROJECT_SOURCE_DIR}/Scripts/fuzz.sh
        ${PROJECT_SOURCE_DIR}/Scripts/install-dependencies.sh
        ${PROJECT_SOURCE_DIR}/Scripts/test.sh
        ${PROJECT_SOURCE_DIR}/.ci/run)
add_test(NAME Repository.An_unclean_script_is_reported
    COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_SOURCE_DIR}/MustReport.py SC2086
        -- ${MU_SHELLCHECK} ${twins}/unclean.sh)
