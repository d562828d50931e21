# Each folder below tests/ with *_test.cpp files is one program and one CTest entry; the files of tests/support are
# linked with all of them.
enable_testing()

# ODBC for the tests: the embedded database's driver under the name "SQL Server", settings in the build folder.
set(odbc_folder ${CMAKE_BINARY_DIR}/odbc)
if(WIN32)
    set(KV_EMBEDDED32 ${CMAKE_SOURCE_DIR}/build/embedded32/libkvembedded.so CACHE FILEPATH
        "The 32-bit driver of the embedded database")
    set(driver_file ${KV_EMBEDDED32})
elseif(TARGET kvembedded)
    set(driver_file $<TARGET_FILE:kvembedded>)
else()
    set(driver_file ${CMAKE_BINARY_DIR}/libkvembedded.so)
endif()
file(GENERATE OUTPUT ${odbc_folder}/odbcinst.ini CONTENT
"[SQL Server]
Description=Embedded database
Driver=${driver_file}
UsageCount=1
")
if(NOT EXISTS ${odbc_folder}/odbc.ini)
    file(WRITE ${odbc_folder}/odbc.ini "")
endif()

set(test_environment
    ODBCSYSINI=${odbc_folder}
    ODBCINI=${odbc_folder}/odbc.ini
    KV_ODBC=${odbc_folder}
    KVEMBEDDED_DRIVER=${driver_file}
    KV_ROOT=${CMAKE_SOURCE_DIR}
    KV_BUILD=${CMAKE_BINARY_DIR}
    ASAN_OPTIONS=strict_string_checks=1:detect_stack_use_after_return=1
    UBSAN_OPTIONS=print_stacktrace=1
)

file(GLOB_RECURSE test_files CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/*_test.cpp)

set(gtest_root /usr/src/googletest/googletest)
if(NOT EXISTS ${gtest_root})
    message(STATUS "GoogleTest is not installed: no test programs (./test installs it)")
    return()
endif()

# GoogleTest is compiled from Debian's sources, so that the sanitizers and the Windows compiler agree with it.
add_library(kv_gtest STATIC EXCLUDE_FROM_ALL ${gtest_root}/src/gtest-all.cc ${gtest_root}/src/gtest_main.cc)
target_include_directories(kv_gtest SYSTEM PUBLIC ${gtest_root}/include PRIVATE ${gtest_root})
target_link_libraries(kv_gtest PUBLIC kv_sanitize)
if(NOT WIN32)
    target_link_libraries(kv_gtest PUBLIC pthread)
endif()

kv_sources(support_sources tests/support)
kv_static_library(kv_test_support ${support_sources})
target_include_directories(kv_test_support ${kv_test_support_scope} ${CMAKE_SOURCE_DIR}/tests)
target_link_libraries(kv_test_support ${kv_test_support_scope} kvheaders_core kv_gtest)

# GoogleTest's header takes most of the time that a test takes to compile: it is compiled once for all programs.
file(WRITE ${CMAKE_BINARY_DIR}/test_header.cpp "int main() {}\n")
add_executable(kv_test_header EXCLUDE_FROM_ALL ${CMAKE_BINARY_DIR}/test_header.cpp)
target_link_libraries(kv_test_header PRIVATE kv_test_support)
target_precompile_headers(kv_test_header PRIVATE <gtest/gtest.h>)

set(test_folders)
foreach(file IN LISTS test_files)
    cmake_path(GET file PARENT_PATH folder)
    list(APPEND test_folders ${folder})
endforeach()
list(REMOVE_DUPLICATES test_folders)

foreach(folder IN LISTS test_folders)
    cmake_path(RELATIVE_PATH folder BASE_DIRECTORY ${CMAKE_SOURCE_DIR}/tests OUTPUT_VARIABLE area)
    if(WIN32 AND area MATCHES "^embedded")
        continue()
    elseif(NOT WIN32 AND area MATCHES "^(com|window)")
        continue()
    endif()
    string(REPLACE "/" "_" name ${area})
    kv_sources(sources tests/${area})
    add_executable(${name}_tests ${sources})
    target_link_libraries(${name}_tests PRIVATE kv_test_support)
    target_precompile_headers(${name}_tests REUSE_FROM kv_test_header)
    if(area MATCHES "^embedded")
        target_link_libraries(${name}_tests PRIVATE kv_tsql_for_tests odbc odbcinst)
    elseif(area MATCHES "^com")
        # the generated interfaces; the DLL itself is loaded at run time
        target_include_directories(${name}_tests PRIVATE ${CMAKE_BINARY_DIR}/com)
        add_dependencies(${name}_tests host_example)
    elseif(area MATCHES "^tools/scenario")
        target_link_libraries(${name}_tests PRIVATE scenario_parts)
    elseif(area MATCHES "^window")
        target_link_libraries(${name}_tests PRIVATE kvheaders_window imm32)
        # the DLL's manifest and icons
        enable_language(RC)
        target_sources(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR}/src/window/window.rc)
        target_include_directories(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR}/src/window)
    endif()
    if(TARGET kvembedded)
        add_dependencies(${name}_tests kvembedded)
    endif()
    if(TARGET KVHEADERS)
        add_dependencies(${name}_tests KVHEADERS)
    endif()

    if(WIN32)
        add_test(NAME ${area} COMMAND ${CMAKE_SOURCE_DIR}/tools/setup/wine-run $<TARGET_FILE:${name}_tests>)
    else()
        add_test(NAME ${area} COMMAND ${name}_tests)
    endif()
    set_tests_properties(${area} PROPERTIES ENVIRONMENT "${test_environment}" TIMEOUT 300
                         WORKING_DIRECTORY ${CMAKE_BINARY_DIR})
    if(area MATCHES "^embedded/driver") # its refused connections show the driver manager's own leak
        set_property(TEST ${area} APPEND PROPERTY ENVIRONMENT
                     LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0)
    endif()
    if(WIN32 AND area MATCHES "^(com|window|tools)")
        set_tests_properties(${area} PROPERTIES RESOURCE_LOCK desktop) # one keyboard focus, one registration
    endif()
    if(area MATCHES "^window")
        set_tests_properties(${area} PROPERTIES RUN_SERIAL TRUE) # what a person sees in time depends on the machine
    endif()
endforeach()
