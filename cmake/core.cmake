# kvheaders_base: what knows nothing of headings (rules of the data, the system's seam, ODBC). kvheaders_core: everything
# but COM and the window. Both are the same on both platforms.
kv_sources(base_sources src/runtime src/platform src/odbc)
kv_sources(core_sources src/host src/model src/store src/report src/editor src/editor/controls)
if(WIN32)
    kv_sources(platform_sources src/platform/windows)
else()
    kv_sources(platform_sources src/platform/posix)
endif()

kv_static_library(kvheaders_base ${base_sources} ${platform_sources})
target_include_directories(kvheaders_base ${kvheaders_base_scope} ${CMAKE_SOURCE_DIR}/src)
target_link_libraries(kvheaders_base ${kvheaders_base_scope} kv_options)
target_compile_definitions(kvheaders_base ${kvheaders_base_scope}
    KVHEADERS_VERSION_MAJOR=${PROJECT_VERSION_MAJOR} KVHEADERS_VERSION_MINOR=${PROJECT_VERSION_MINOR}
    KVHEADERS_VERSION_PATCH=${PROJECT_VERSION_PATCH})
if(WIN32)
    target_link_libraries(kvheaders_base ${kvheaders_base_scope} odbc32 comctl32 shell32 oleaut32 ole32 uuid advapi32
                          gdi32 user32)
else()
    target_link_libraries(kvheaders_base ${kvheaders_base_scope} odbc)
endif()

# The standard headers that most files include: reading them takes half the time of compiling a file.
target_precompile_headers(kvheaders_base PRIVATE <algorithm> <functional> <memory> <optional> <string> <string_view>
                          <unordered_map> <utility> <vector>)

kv_static_library(kvheaders_core ${core_sources})
target_precompile_headers(kvheaders_core REUSE_FROM kvheaders_base)
target_link_libraries(kvheaders_core ${kvheaders_core_scope} kvheaders_base)

if(KV_COVERAGE)
    # Also what includes the headers of src/: of an inline function the linker keeps one copy, perhaps a test's.
    target_compile_options(kvheaders_base PUBLIC --coverage -fprofile-update=atomic)
    target_link_options(kvheaders_base PUBLIC --coverage)
endif()
