# SPDX-License-Identifier: Apache-2.0

# Warnings, sanitizers and Qt's strict string rules, for every target of the project.
add_library(clivara_options INTERFACE)
target_include_directories(clivara_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
# With the last option ccache knows objects that use a precompiled header.
target_compile_options(clivara_options INTERFACE -Wall -Wextra -Wshadow $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
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

# A list in a layer's description; empty when the description has none of that name.
function(clivara_layer_list layer name result)
    set(values)
    string(JSON count ERROR_VARIABLE missing LENGTH "${layer}" ${name})
    if(NOT missing AND count GREATER 0)
        math(EXPR last "${count} - 1")
        foreach(index RANGE ${last})
            string(JSON value GET "${layer}" ${name} ${index})
            list(APPEND values ${value})
        endforeach()
    endif()
    set(${result} "${values}" PARENT_SCOPE)
endfunction()

# One layer of the program, as src/layers.json describes it: the static library clivara_<folder> (with _ for
# /) of all sources in its folder, not below it. The layer of the kind "component" is libclivara instead: it
# carries the objects of all layers before it, so that a host links this one library. Tests of a lower layer
# link that layer; what links libclivara links no layer beside it.
function(clivara_layer layer)
    string(JSON folder GET "${layer}" folder)
    string(JSON window ERROR_VARIABLE noWindow GET "${layer}" window)
    string(JSON kind ERROR_VARIABLE noKind GET "${layer}" kind)
    clivara_layer_list("${layer}" uses uses)
    clivara_layer_list("${layer}" libraries libraries)
    string(REPLACE "/" "_" name clivara_${folder})
    file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h ${folder}/*.ui ${folder}/*.qrc)
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")

    if(kind STREQUAL "component")
        get_property(layers GLOBAL PROPERTY CLIVARA_LAYERS)
        list(TRANSFORM layers REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)
        add_library(clivara SHARED ${sources} ${objects})
        set_target_properties(clivara PROPERTIES LINKER_LANGUAGE CXX)
        get_property(outside GLOBAL PROPERTY CLIVARA_OUTSIDE_LIBRARIES)
        target_link_libraries(clivara PUBLIC clivara_options Qt6::Core Qt6::Widgets ${outside})
        add_library(${name} ALIAS clivara)
        return()
    endif()

    add_library(${name} STATIC ${sources})
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
    list(TRANSFORM uses REPLACE "/" "_")
    list(TRANSFORM uses PREPEND "clivara_")
    target_link_libraries(${name} PUBLIC clivara_options Qt6::Core ${uses} ${libraries})
    if(NOT TARGET clivara)
        set_property(GLOBAL APPEND PROPERTY CLIVARA_LAYERS ${name})
        set_property(GLOBAL APPEND PROPERTY CLIVARA_OUTSIDE_LIBRARIES ${libraries})
    endif()
    # The lowest layer of each kind makes the precompiled headers for all of them.
    set(headers <QString> <QVariant> <QDateTime> <QList> <QHash> <algorithm> <functional> <memory> <optional> <vector>)
    set(owner clivara_values)
    if(window)
        target_link_libraries(${name} PUBLIC Qt6::Widgets)
        list(APPEND headers <QtWidgets>)
        set(owner clivara_support_ui)
    endif()
    if(owner STREQUAL name)
        target_precompile_headers(${name} PRIVATE ${headers})
    else()
        target_precompile_headers(${name} REUSE_FROM ${owner})
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
