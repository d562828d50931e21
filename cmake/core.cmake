# kvheaders_core: everything but COM and the window, on both platforms.
kv_sources(core_sources src/runtime src/platform src/odbc src/host src/model src/store src/report src/editor
           src/editor/controls)
if(WIN32)
    kv_sources(platform_sources src/platform/windows)
else()
    kv_sources(platform_sources src/platform/posix)
endif()

kv_static_library(kvheaders_core ${core_sources} ${platform_sources})
target_include_directories(kvheaders_core ${kvheaders_core_scope} ${CMAKE_SOURCE_DIR}/src)
target_link_libraries(kvheaders_core ${kvheaders_core_scope} kv_options)
target_compile_definitions(kvheaders_core ${kvheaders_core_scope}
    KVHEADERS_VERSION_MAJOR=${PROJECT_VERSION_MAJOR} KVHEADERS_VERSION_MINOR=${PROJECT_VERSION_MINOR}
    KVHEADERS_VERSION_PATCH=${PROJECT_VERSION_PATCH})
if(WIN32)
    target_link_libraries(kvheaders_core ${kvheaders_core_scope} odbc32 comctl32 shell32 oleaut32 ole32 uuid advapi32
                          gdi32 user32)
else()
    target_link_libraries(kvheaders_core ${kvheaders_core_scope} odbc)
endif()
