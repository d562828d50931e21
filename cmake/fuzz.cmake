# tsql_fuzz: the dialect fed with any text, built with clang for its libFuzzer while all the rest is built with g++. It is
# a test of ten seconds; to run it for as long as one likes, on what earlier runs have found interesting:
#     cd build/native && fuzz/tsql_fuzz -max_total_time=600 -timeout=20 -artifact_prefix=fuzz/ fuzz/found
find_program(KV_FUZZ_COMPILER clang++-14 REQUIRED)

set(fuzz_folder ${CMAKE_BINARY_DIR}/fuzz)
set(fuzz_files ${CMAKE_SOURCE_DIR}/tests/embedded/fuzz)
file(MAKE_DIRECTORY ${fuzz_folder}/found)
set(fuzz_flags -std=c++20 -O1 -g1 -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=undefined)

set(fuzz_objects)
foreach(source IN LISTS tsql_sources ITEMS ${fuzz_files}/tsql_fuzz.cpp)
    cmake_path(GET source STEM stem)
    set(object ${fuzz_folder}/${stem}.o)
    add_custom_command(
        OUTPUT ${object}
        COMMAND ${CMAKE_CXX_COMPILER_LAUNCHER} ${KV_FUZZ_COMPILER} ${fuzz_flags} -I${CMAKE_SOURCE_DIR}/embedded -MD -MF
                ${object}.d -c ${source} -o ${object}
        DEPENDS ${source}
        DEPFILE ${object}.d
        COMMENT "Building ${stem}.cpp for the fuzzer"
        VERBATIM)
    list(APPEND fuzz_objects ${object})
endforeach()
add_custom_command(
    OUTPUT ${fuzz_folder}/tsql_fuzz
    COMMAND ${KV_FUZZ_COMPILER} ${fuzz_flags} ${fuzz_objects} -lsqlite3 -o ${fuzz_folder}/tsql_fuzz
    DEPENDS ${fuzz_objects}
    COMMENT "Linking tsql_fuzz"
    VERBATIM)
add_custom_target(tsql_fuzz ALL DEPENDS ${fuzz_folder}/tsql_fuzz)

# The same start each time, so that a tree that passed keeps passing; the longer run above takes chances.
add_test(NAME embedded/fuzz
         COMMAND ${fuzz_folder}/tsql_fuzz -seed=1 -max_total_time=10 -timeout=20 -print_final_stats=1
                 -dict=${fuzz_files}/tsql.dict -artifact_prefix=${fuzz_folder}/ ${fuzz_folder}/found
                 ${fuzz_files}/corpus)
set_tests_properties(embedded/fuzz PROPERTIES TIMEOUT 120)
