# scenario: the player of sessions. On Linux its stage is headless, for Windows it drives the real window.
kv_sources(scenario_sources tools/scenario/script tools/scenario/play)
if(WIN32)
    kv_sources(scenario_stage_sources tools/scenario/windowed)
    set(scenario_driver ${KV_EMBEDDED32})
else()
    kv_sources(scenario_stage_sources tools/scenario/headless)
    set(scenario_driver $<TARGET_FILE:kvembedded>)
endif()

# What it shares with other tools is compiled where it stands.
kv_static_library(scenario_parts ${scenario_sources} ${CMAKE_SOURCE_DIR}/tools/sqlbatch/batches.cpp)
target_include_directories(scenario_parts PRIVATE ${CMAKE_SOURCE_DIR}/embedded)
kv_tool_headers(scenario_parts PUBLIC tools/scenario)
target_link_libraries(scenario_parts PUBLIC kvheaders_core)
target_compile_definitions(scenario_parts PRIVATE SCENARIO_DRIVER="${scenario_driver}"
                           SCENARIO_TABLES="${CMAKE_SOURCE_DIR}/embedded/database/tables.sql")

if(scenario_stage_sources)
    add_executable(scenario tools/scenario/main.cpp ${scenario_stage_sources})
    target_link_libraries(scenario PRIVATE scenario_parts)
    if(WIN32)
        target_link_libraries(scenario PRIVATE kv_window_driver uuid oleaut32 ole32 shell32)
        target_link_options(scenario PRIVATE -s) # it is delivered
    endif()
    if(TARGET kvembedded)
        add_dependencies(scenario kvembedded)
    endif()
endif()

# All scenarios against their approved transcripts, which are the same on both stages. Approving changes: tools/accept.
if(NOT WIN32)
    add_test(NAME scenarios COMMAND ${CMAKE_SOURCE_DIR}/tools/scenario/compare-transcripts $<TARGET_FILE:scenario>)
    add_test(NAME scenarios_data_source
             COMMAND ${CMAKE_SOURCE_DIR}/tools/scenario/compare-data-source $<TARGET_FILE:scenario>)
    set(leak_options LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0)
    set_tests_properties(scenarios scenarios_data_source PROPERTIES ENVIRONMENT "${test_environment};${leak_options}"
                                                                    TIMEOUT 600)
elseif(TARGET scenario AND TARGET KVHEADERS)
    # By itself: what else has a window would take the keyboard away.
    add_test(NAME scenarios_window COMMAND ${CMAKE_SOURCE_DIR}/tools/scenario/compare-window $<TARGET_FILE:scenario>
                                           $<TARGET_FILE:KVHEADERS>)
    set_tests_properties(scenarios_window PROPERTIES ENVIRONMENT "${test_environment};${checked_heap}" TIMEOUT 1200
                                                      RUN_SERIAL ON)
endif()
