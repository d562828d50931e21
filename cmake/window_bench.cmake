# window_bench: the benchmarks of the real window, a Windows program. bench/run builds and runs it.
kv_sources(window_bench_sources bench/window)
add_executable(window_bench EXCLUDE_FROM_ALL ${window_bench_sources} ${CMAKE_SOURCE_DIR}/bench/bare_odbc.cpp
                            ${CMAKE_SOURCE_DIR}/tests/support/escape.cpp ${CMAKE_SOURCE_DIR}/tests/window/themed.rc)
enable_language(RC)
target_include_directories(window_bench PRIVATE ${CMAKE_SOURCE_DIR}/bench ${CMAKE_SOURCE_DIR}/tests
                                                ${CMAKE_SOURCE_DIR}/src/com)
target_link_libraries(window_bench PRIVATE kvheaders_window)
# Written for ODBC's plain names; on Windows its headers want windows.h before them.
set_source_files_properties(${CMAKE_SOURCE_DIR}/bench/bare_odbc.cpp PROPERTIES
    COMPILE_OPTIONS "-UUNICODE;-include;windows.h")
