# SPDX-License-Identifier: Apache-2.0

# Warnings, sanitizers and Qt's strict string rules, for every target of the project.
add_library(clivara_options INTERFACE)
target_include_directories(clivara_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(clivara_options INTERFACE -Wall -Wextra -Wshadow)
target_compile_definitions(clivara_options INTERFACE
    QT_NO_FOREACH QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(CLIVARA_WERROR)
    target_compile_options(clivara_options INTERFACE -Werror)
endif()
if(CLIVARA_SANITIZE)
    # The tests' own code is not what is looked at: it goes without the slower of the two.
    target_compile_options(clivara_options INTERFACE -fsanitize=address -fno-omit-frame-pointer
        $<$<NOT:$<BOOL:$<TARGET_PROPERTY:CLIVARA_TESTS>>>:-fsanitize=undefined$<SEMICOLON>-fno-sanitize-recover=all>)
    target_link_options(clivara_options INTERFACE -fsanitize=address,undefined)
endif()

# One layer of the program: a static library named clivara_<name> of all sources in its folder (not below it).
# clivara_layer(NAME [GUI] [DEPENDS target...])
function(clivara_layer name)
    cmake_parse_arguments(ARG "GUI" "" "DEPENDS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h *.ui *.qrc)
    add_library(clivara_${name} STATIC ${sources})
    set_target_properties(clivara_${name} PROPERTIES LINKER_LANGUAGE CXX)
    target_link_libraries(clivara_${name} PUBLIC clivara_options Qt6::Core ${ARG_DEPENDS})
    # The lowest layer of each kind makes the precompiled headers for all of them.
    set(headers <QString> <QVariant> <QDateTime> <QList> <QHash> <algorithm> <functional> <memory> <optional> <vector>)
    set(owner clivara_values)
    if(ARG_GUI)
        target_link_libraries(clivara_${name} PUBLIC Qt6::Widgets)
        list(APPEND headers <QtWidgets>)
        set(owner clivara_support_ui)
    endif()
    if(owner STREQUAL clivara_${name})
        target_precompile_headers(clivara_${name} PRIVATE ${headers})
    else()
        target_precompile_headers(clivara_${name} REUSE_FROM ${owner})
    endif()
endfunction()

# Runs a whole test program once more, against a database server that is started for it.
function(clivara_server_tests name)
    add_test(NAME ${name}.OnTheServer
        COMMAND ${PROJECT_SOURCE_DIR}/tests/server/with-postgres $<TARGET_FILE:${name}> ${ARGN})
    set_tests_properties(${name}.OnTheServer PROPERTIES TIMEOUT 300
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp")
endfunction()

# A test program from the sources in one folder; each of its cases is a test of its own.
# clivara_tests(NAME SOURCES file... LINKS target...)
function(clivara_tests name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE clivara_test_main ${ARG_LINKS})
    set_target_properties(${name} PROPERTIES CLIVARA_TESTS ON)
    target_compile_options(${name} PRIVATE $<$<CONFIG:Debug>:-g1>)
    target_precompile_headers(${name} REUSE_FROM clivara_test_main)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 120 ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp")
endfunction()
