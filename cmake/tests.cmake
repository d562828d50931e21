# Each folder below tests/ with *_test.cpp files is one program; the files of tests/support are linked with all of them.
# CTest runs a program as one entry, since every start costs a tenth of a second. Natively it also knows each case as an
# entry of its own, labelled "case"; entries labelled "long" repeat a program with more rounds. The test presets leave
# both out, `ctest --preset cases` runs the cases.
enable_testing()
include(GoogleTest)

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
file(GENERATE OUTPUT ${odbc_folder}/odbc.ini CONTENT "[KvTestUser]\nDriver=SQL Server\n")

# LeakSanitizer misreads the thread-local blocks of a driver that is unloaded and loaded again, and crashes at the end.
set(asan_options strict_string_checks=1:intercept_tls_get_addr=0)
set(test_environment
    ODBCSYSINI=${odbc_folder}
    ODBCINI=${odbc_folder}/odbc.ini
    KV_ODBC=${odbc_folder}
    KVEMBEDDED_DRIVER=${driver_file}
    KV_ROOT=${CMAKE_SOURCE_DIR}
    KV_BUILD=${CMAKE_BINARY_DIR}
    ASAN_OPTIONS=${asan_options}:detect_stack_use_after_return=1
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
target_include_directories(kv_test_support ${kv_test_support_scope} ${CMAKE_SOURCE_DIR}/tests
                           ${CMAKE_SOURCE_DIR}/embedded)
kv_tool_headers(kv_test_support ${kv_test_support_scope} tools/scenario)
target_link_libraries(kv_test_support ${kv_test_support_scope} kvheaders_core kv_gtest)

# The window's code has no sanitizers: Wine overwrites what is freed, and tells of what is freed twice.
set(checked_heap WINEDEBUG=-all,err+heap,warn+heap)

# kv_add_test(NAME AREA VARIABLE=VALUE...): an entry that runs the program of a folder, and leaves its results beside
# CTest's own for ./test to count. It ends by itself after five minutes, one labelled "long" after four hours.
function(kv_add_test name area)
    string(REPLACE "/" "_" program ${area})
    string(REPLACE "/" "_" results ${name})
    if(WIN32)
        set(run ${CMAKE_SOURCE_DIR}/tools/setup/wine-run)
        if(area MATCHES "^sessions")
            set(run ${CMAKE_SOURCE_DIR}/tools/scenario/play-window)
        endif()
        add_test(NAME ${name} COMMAND ${run} $<TARGET_FILE:${program}_tests>)
    else()
        add_test(NAME ${name} COMMAND ${program}_tests)
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
        ENVIRONMENT "${test_environment};GTEST_OUTPUT=xml:Testing/cases/${results}.xml;${ARGN}")
    if(WIN32 AND area MATCHES "^(com|window|sessions|tools)")
        set_tests_properties(${name} PROPERTIES RESOURCE_LOCK desktop) # one keyboard focus, one registration
    endif()
    if(area MATCHES "window")
        set_tests_properties(${name} PROPERTIES RUN_SERIAL TRUE) # what a user sees in time depends on the machine
    endif()
endfunction()

# kv_add_long_test(AREA VARIABLE=VALUE...)
function(kv_add_long_test area)
    string(REPLACE "/" "_" program ${area})
    if(TARGET ${program}_tests)
        kv_add_test(${area}/long ${area} KV_WINE_SECONDS=3600 ${environment_${area}} ${ARGN})
        set_tests_properties(${area}/long PROPERTIES LABELS long TIMEOUT 14400)
    endif()
endfunction()

# GoogleTest's header takes most of the time that a test takes to compile: it is compiled once for all programs.
file(WRITE ${CMAKE_BINARY_DIR}/test_header.cpp "int main() {}\n")
add_executable(kv_test_header EXCLUDE_FROM_ALL ${CMAKE_BINARY_DIR}/test_header.cpp)
target_link_libraries(kv_test_header PRIVATE kv_test_support)
target_precompile_headers(kv_test_header PRIVATE <gtest/gtest.h>)

set(case_environments)
set(test_folders)
foreach(file IN LISTS test_files)
    cmake_path(GET file PARENT_PATH folder)
    list(APPEND test_folders ${folder})
endforeach()
list(REMOVE_DUPLICATES test_folders)

foreach(folder IN LISTS test_folders)
    cmake_path(RELATIVE_PATH folder BASE_DIRECTORY ${CMAKE_SOURCE_DIR}/tests OUTPUT_VARIABLE area)
    if(WIN32 AND area MATCHES "^(embedded|faults|sessions$|tools/database)")
        continue()
    elseif(NOT WIN32 AND area MATCHES "^(com|window|sessions/window)")
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
        target_link_libraries(${name}_tests PRIVATE kv_window_driver version)
        # the component once more, with allocations that fail on demand; it overwrites what it frees
        add_library(KVHEADERS_failing SHARED EXCLUDE_FROM_ALL $<TARGET_OBJECTS:kvheaders_com> ${resource_files}
                                             ${CMAKE_SOURCE_DIR}/src/com/kvheaders.def tests/com/failing/failing_new.cpp)
        set_target_properties(KVHEADERS_failing PROPERTIES PREFIX "" LINKER_LANGUAGE CXX)
        target_include_directories(KVHEADERS_failing PRIVATE ${CMAKE_SOURCE_DIR}/tests ${generated} ${CMAKE_SOURCE_DIR}/src/com
                                                             ${CMAKE_SOURCE_DIR}/src/window ${CMAKE_SOURCE_DIR}/src)
        target_link_libraries(KVHEADERS_failing PRIVATE kvheaders_window)
        target_link_options(KVHEADERS_failing PRIVATE -Wl,--enable-stdcall-fixup)
        add_dependencies(${name}_tests host_example KVHEADERS_failing)
    elseif(area STREQUAL "tools/database")
        add_dependencies(${name}_tests sqlbatch generate_site)
    elseif(area MATCHES "^tools/scenario")
        target_link_libraries(${name}_tests PRIVATE scenario_parts)
    elseif(area STREQUAL "tools/acceptance")
        target_sources(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR}/tools/acceptance/verdict.cpp)
        kv_tool_headers(${name}_tests PRIVATE)
    elseif(area STREQUAL "sessions") # played on the scenario player's stage
        set(headless ${CMAKE_SOURCE_DIR}/tools/scenario/headless)
        target_sources(${name}_tests PRIVATE ${headless}/stage.cpp ${headless}/desktop.cpp ${headless}/machine_registry.cpp)
        target_link_libraries(${name}_tests PRIVATE scenario_parts)
    elseif(area STREQUAL "sessions/window") # played on both stages
        kv_sources(shared tests/sessions tools/scenario/windowed)
        list(FILTER shared EXCLUDE REGEX "(_test|/process)\\.cpp$")
        set(headless ${CMAKE_SOURCE_DIR}/tools/scenario/headless)
        target_sources(${name}_tests PRIVATE ${shared} ${headless}/stage.cpp ${headless}/desktop.cpp)
        target_link_libraries(${name}_tests PRIVATE scenario_parts kv_window_driver)
    elseif(area MATCHES "^window")
        target_link_libraries(${name}_tests PRIVATE kvheaders_window kv_window_driver imm32)
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

    set(environment)
    if(area MATCHES "^(embedded/driver|sessions)") # the driver manager loses a few bytes of each connection
        set(environment LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0)
    endif()
    if(area MATCHES "^(faults|sessions)$") # thousands of exceptions: what is kept of the stack would be searched at each call
        list(APPEND environment ASAN_OPTIONS=${asan_options}:detect_stack_use_after_return=0:quarantine_size_mb=64)
    endif()
    if(WIN32 AND area MATCHES "window")
        list(APPEND environment ${checked_heap})
    endif()
    set(environment_${area} ${environment})
    kv_add_test(${area} ${area} ${environment})
    if(area STREQUAL "sessions")
        set_tests_properties(sessions PROPERTIES TIMEOUT 1800 PROCESSORS 2)
    endif()
    if(NOT WIN32)
        gtest_discover_tests(${name}_tests TEST_PREFIX ${area}. NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST
                             DISCOVERY_TIMEOUT 60 WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
                             PROPERTIES LABELS case TIMEOUT 300)
        # Its properties cannot hold a list: the cases get their environment where CTest reads them.
        string(APPEND case_environments "foreach(case IN LISTS ${name}_tests_TESTS)
    set_tests_properties(\${case} PROPERTIES ENVIRONMENT \"${test_environment};${environment}\")
endforeach()\n")
    endif()
endforeach()

if(case_environments)
    file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/case_environments.cmake CONTENT "${case_environments}")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${CMAKE_BINARY_DIR}/case_environments.cmake)
endif()

if(NOT WIN32)
    add_test(NAME layers COMMAND ${CMAKE_SOURCE_DIR}/tools/check-layers)
    add_test(NAME documents COMMAND ${CMAKE_SOURCE_DIR}/tools/check-documents)
endif()

kv_add_long_test(concurrency KV_SAVES=1000)
kv_add_long_test(sessions KV_LONG=1)
kv_add_long_test(faults KV_STRIDE=1)
kv_add_long_test(sessions/window KV_SESSIONS=300)
kv_add_long_test(com KV_OPENINGS=1000 KV_STRIDE=1 GTEST_FILTER=Endurance.*:MemoryOfTheEditor.*)
