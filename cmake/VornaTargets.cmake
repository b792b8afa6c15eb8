# The flags that every target of ours carries, and the two ways to make one: a layer and a test.

add_library(vorna_flags INTERFACE)
target_compile_options(vorna_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wold-style-cast -Woverloaded-virtual -Wnon-virtual-dtor -Werror
    $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>
    $<$<CXX_COMPILER_ID:Clang>:-Wshadow>)
target_compile_definitions(vorna_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_FOREACH QT_STRICT_ITERATORS)
target_include_directories(vorna_flags INTERFACE ${PROJECT_SOURCE_DIR})

# Some sixty tests link the same layers: what links them seven times as fast is worth it, where it is there.
find_program(VORNA_LLD ld.lld)
if(VORNA_LLD AND CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_link_options(vorna_flags INTERFACE -fuse-ld=lld)
endif()

if(VORNA_SANITIZE)
    target_compile_options(vorna_flags INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(vorna_flags INTERFACE -fsanitize=address,undefined)
endif()

# Half of the time of a build from scratch goes into reading the toolkit's headers. Only those of its core are asked
# for by macros, so that targets with more and with fewer of its modules share one precompiled header.
if(VORNA_PCH AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # For ccache, which has to see that the header is used.
    target_compile_options(vorna_flags INTERFACE -fpch-preprocess)
    add_library(vorna_headers STATIC ${PROJECT_SOURCE_DIR}/cmake/headers.cpp)
    set_target_properties(vorna_headers PROPERTIES AUTOMOC OFF AUTOUIC OFF)
    target_link_libraries(vorna_headers PRIVATE vorna_flags Qt5::Core)
    target_include_directories(vorna_headers SYSTEM PRIVATE
        ${Qt5Gui_INCLUDE_DIRS} ${Qt5Sql_INCLUDE_DIRS} ${Qt5Widgets_INCLUDE_DIRS})
    target_precompile_headers(vorna_headers PRIVATE ${PROJECT_SOURCE_DIR}/cmake/headers.h)
endif()

if(VORNA_TIDY)
    find_program(VORNA_CLANG_TIDY clang-tidy REQUIRED)
endif()

function(vorna_check_style target)
    if(VORNA_TIDY)
        set_target_properties(${target} PROPERTIES CXX_CLANG_TIDY
            "${VORNA_CLANG_TIDY};--warnings-as-errors=*;--quiet")
    endif()
endfunction()

# vorna_link(target PUBLIC|PRIVATE ...): links libraries; those of ours are given by their folders.
function(vorna_link target scope)
    foreach(library IN LISTS ARGN)
        if(EXISTS ${PROJECT_SOURCE_DIR}/${library}/CMakeLists.txt)
            string(REPLACE / _ library vorna_${library})
        endif()
        target_link_libraries(${target} ${scope} ${library})
    endforeach()
    if(TARGET vorna_headers AND "vorna_flags" IN_LIST ARGN)
        target_precompile_headers(${target} REUSE_FROM vorna_headers)
    endif()
endfunction()

# vorna_add_layer(SOURCES ... LINKS ...): the library of this folder, db/sql as vorna_db_sql.
# Of our folders it links those that its sources include, and no others: check-includes.sh looks.
function(vorna_add_layer)
    cmake_parse_arguments(LAYER "" "" "SOURCES;LINKS" ${ARGN})
    file(RELATIVE_PATH name ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    string(REPLACE / _ name vorna_${name})
    add_library(${name} ${LAYER_SOURCES})
    vorna_link(${name} PUBLIC vorna_flags ${LAYER_LINKS})
    vorna_check_style(${name})
endfunction()

# vorna_add_test(name LINKS ... [LABELS ...] [SOURCES ...]): tests/<name>.cpp as one QtTest binary and one
# CTest entry, run on the offscreen platform with settings of its own.
function(vorna_add_test name)
    cmake_parse_arguments(TEST "" "" "SOURCES;LINKS;LABELS" ${ARGN})
    add_executable(${name} ${name}.cpp ${TEST_SOURCES})
    vorna_link(${name} PRIVATE vorna_flags vorna_test_support ${TEST_LINKS} Qt5::Test)
    if("${TEST_LINKS}" MATCHES "fileops/|db/manager|core/controllers|ui/|app/window")
        vorna_read_pictures(${name})
    endif()
    if("gui" IN_LIST TEST_LABELS)
        vorna_link(${name} PRIVATE vorna_test_watchdog)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        LABELS "${TEST_LABELS}"
        TIMEOUT 300
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;QTEST_FUNCTION_TIMEOUT=120000;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp;UBSAN_OPTIONS=print_stacktrace=1")
    # The private server has one database, which such tests empty and fill.
    if("postgres" IN_LIST TEST_LABELS)
        set_tests_properties(${name} PROPERTIES RESOURCE_LOCK postgres)
    endif()
endfunction()
