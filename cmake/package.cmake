# What is delivered: a ZIP and a setup program, made by tools/package. Version and names come from project().
install(TARGETS KVHEADERS RUNTIME DESTINATION .)
install(FILES ${typelib} DESTINATION . RENAME KVHEADERS.tlb)
install(FILES CHANGELOG.md package/README.md DESTINATION .)
install(FILES ${CMAKE_BINARY_DIR}/KVHEADERS.X.manifest DESTINATION .)
install(FILES ${CMAKE_BINARY_DIR}/host.exe.manifest DESTINATION examples)
install(FILES docs/for-hosts.md docs/for-administrators.md docs/acceptance.md docs/check-site.sql docs/editor.png
              embedded/database/tables.sql DESTINATION docs)
install(DIRECTORY examples/ DESTINATION examples)
install(SCRIPT ${CMAKE_SOURCE_DIR}/package/checksums.cmake)

set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Speech Recognition Headings Editor")
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_GENERATOR ZIP NSIS)
set(CPACK_NSIS_DISPLAY_NAME "Speech Recognition Headings Editor (${PROJECT_NAME})")
set(CPACK_NSIS_MUI_ICON ${CMAKE_SOURCE_DIR}/src/window/icons/component.ico)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_MONOLITHIC_INSTALL ON) # the acceptance kit, a component of its own, is packed by itself
list(APPEND CMAKE_MODULE_PATH ${CMAKE_SOURCE_DIR}/package) # NSIS.template.in, in place of CPack's own
include(CPack)

# By itself, and long: a Wine prefix of its own, some minutes. Needs Debian's nsis.
enable_testing()
add_test(NAME setup COMMAND ${CMAKE_SOURCE_DIR}/tests/package/check-setup)
set_tests_properties(setup PROPERTIES LABELS long TIMEOUT 1800 RUN_SERIAL ON)
