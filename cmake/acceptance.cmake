# The acceptance kit, a ZIP of its own made by tools/package: what is needed to play the scenarios on a real Windows.
kv_sources(acceptance_sources tools/acceptance tools/acceptance/windows)
add_executable(acceptance ${acceptance_sources})
kv_tool_headers(acceptance PRIVATE)
target_link_libraries(acceptance PRIVATE kvheaders_base)
target_link_options(acceptance PRIVATE -s)

set(kit COMPONENT acceptance EXCLUDE_FROM_ALL)
install(TARGETS KVHEADERS scenario acceptance RUNTIME DESTINATION . ${kit})
install(FILES package/accept.cmd docs/acceptance.md docs/check-site.sql embedded/database/tables.sql DESTINATION . ${kit})
install(SCRIPT ${CMAKE_SOURCE_DIR}/package/scenarios.cmake ${kit})
install(SCRIPT ${CMAKE_SOURCE_DIR}/package/checksums.cmake ${kit})

file(WRITE ${CMAKE_BINARY_DIR}/CPackAcceptance.cmake
"include(\"${CMAKE_BINARY_DIR}/CPackConfig.cmake\")
set(CPACK_GENERATOR ZIP)
set(CPACK_INSTALL_CMAKE_PROJECTS \"${CMAKE_BINARY_DIR};${PROJECT_NAME};acceptance;/\")
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-acceptance)
")

# By itself, and long: all scenarios one behind the other, in a Wine prefix of its own.
add_test(NAME acceptance COMMAND ${CMAKE_SOURCE_DIR}/tests/package/check-acceptance)
set_tests_properties(acceptance PROPERTIES LABELS long TIMEOUT 1800 RUN_SERIAL ON)
