# kv_window_driver: a user at the real window, for the scenario player, the tests and the benchmarks of Windows.
kv_sources(window_driver_sources tools/window_driver)
kv_static_library(kv_window_driver ${window_driver_sources})
set_target_properties(kv_window_driver PROPERTIES EXCLUDE_FROM_ALL ON)
kv_tool_headers(kv_window_driver PUBLIC)
target_link_libraries(kv_window_driver PUBLIC kvheaders_core ole32)
