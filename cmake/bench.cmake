# kv_bench: the benchmarks, where Google Benchmark is installed. ./bench installs it, builds and runs them.
find_package(benchmark QUIET)
if(benchmark_FOUND)
    kv_sources(bench_sources bench)
    add_executable(kv_bench EXCLUDE_FROM_ALL ${bench_sources} ${CMAKE_SOURCE_DIR}/tests/support/escape.cpp)
    target_include_directories(kv_bench PRIVATE ${CMAKE_SOURCE_DIR}/bench ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(kv_bench PRIVATE kvheaders_core benchmark::benchmark sqlite3)
endif()
