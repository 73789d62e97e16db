# Warnings for targets built from our own sources (never for generated or third-party code).
function(tavero_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wno-missing-field-initializers)
    if(WIN32)
        # GCC warns about Qt's friend declarations "redeclared without dllimport attribute".
        target_compile_options(${target} PRIVATE -Wno-attributes)
    endif()
    if(TAVERO_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()

# tavero_add_test(NAME name SOURCES ... [LIBS ...] [LABELS unit|integration|gui|e2e] [TIMEOUT s]
#                 [ENV VAR=value ...] [DEVSERVICE])
# One Qt Test executable, registered with CTest, run with a fixed locale and offscreen.
# DEVSERVICE: the test starts tavero-devservice (tests/support/devservice.h); it is built first and
# its path reaches the test as TAVERO_DEVSERVICE. Without the tools the test is left out.
function(tavero_add_test)
    cmake_parse_arguments(T "DEVSERVICE" "NAME;TIMEOUT" "SOURCES;LIBS;LABELS;ENV" ${ARGN})
    if(T_DEVSERVICE AND NOT TARGET tavero-devservice)
        message(STATUS "${T_NAME} left out: it needs tavero-devservice (TAVERO_BUILD_TOOLS=OFF)")
        return()
    endif()
    if(NOT T_LABELS)
        set(T_LABELS unit)
    endif()
    if(NOT T_TIMEOUT)
        set(T_TIMEOUT 120)
    endif()
    add_executable(${T_NAME} ${T_SOURCES})
    target_link_libraries(${T_NAME} PRIVATE tavero_testsupport ${T_LIBS} Qt5::Test)
    tavero_warnings(${T_NAME})
    if(T_DEVSERVICE)
        add_dependencies(${T_NAME} tavero-devservice)
        list(APPEND T_ENV "TAVERO_DEVSERVICE=$<TARGET_FILE:tavero-devservice>")
    endif()
    add_test(NAME ${T_NAME} COMMAND ${T_NAME})
    set_tests_properties(${T_NAME} PROPERTIES
        LABELS "${T_LABELS}"
        TIMEOUT ${T_TIMEOUT}
        ENVIRONMENT "LC_ALL=C.UTF-8;LANG=C.UTF-8;QT_QPA_PLATFORM=offscreen;TAVERO_KEEP_NETWORK=1;TAVERO_TEST_BIN_DIR=${CMAKE_BINARY_DIR};TAVERO_SOURCE_DIR=${CMAKE_SOURCE_DIR};${T_ENV}")
endfunction()
