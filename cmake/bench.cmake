# kv_bench: the benchmarks outside Wine, where Google Benchmark is installed. window_bench: those of the real window, a
# Windows program, for which Debian has no such library. bench/run installs it, builds and runs both.
if(WIN32)
    kv_sources(window_bench_sources bench/window)
    set(bench_folder ${CMAKE_SOURCE_DIR}/bench)
    add_executable(window_bench EXCLUDE_FROM_ALL ${window_bench_sources} ${bench_folder}/bare_odbc.cpp
                                ${bench_folder}/table.cpp ${CMAKE_SOURCE_DIR}/src/window/window.rc)
    enable_language(RC)
    target_include_directories(window_bench PRIVATE ${bench_folder} ${CMAKE_SOURCE_DIR}/embedded ${CMAKE_SOURCE_DIR}/src/window)
    target_link_libraries(window_bench PRIVATE kvheaders_window kv_window_driver)
    # Written for ODBC's plain names; on Windows its headers want windows.h before them.
    set_source_files_properties(${bench_folder}/bare_odbc.cpp PROPERTIES COMPILE_OPTIONS "-UUNICODE;-include;windows.h")
else()
    find_package(benchmark QUIET)
    if(benchmark_FOUND)
        kv_sources(bench_sources bench)
        add_executable(kv_bench EXCLUDE_FROM_ALL ${bench_sources})
        target_include_directories(kv_bench PRIVATE ${CMAKE_SOURCE_DIR}/bench ${CMAKE_SOURCE_DIR}/embedded)
        target_link_libraries(kv_bench PRIVATE kvheaders_core sqlite3 benchmark::benchmark)
    endif()
endif()
