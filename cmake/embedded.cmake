# The embedded database: the dialect (tsql) and its ODBC driver (libkvembedded.so). The driver is loaded into programs
# of all kinds, so that it has no sanitizers; kv_tsql_for_tests is the same dialect with them.
kv_sources(tsql_sources embedded/tsql)
# What the dialect and the driver share with the component is compiled where it stands.
list(APPEND tsql_sources ${CMAKE_SOURCE_DIR}/src/platform/posix/code_page.cpp
            ${CMAKE_SOURCE_DIR}/src/runtime/collation.cpp ${CMAKE_SOURCE_DIR}/src/runtime/text.cpp)
kv_sources(driver_sources embedded/driver)

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(sqlite_library -l:libsqlite3.so.0) # Debian has no 32-bit development files; the header is the same
    set(odbcinst_library -l:libodbcinst.so.2)
else()
    set(sqlite_library sqlite3)
    set(odbcinst_library odbcinst)
endif()

function(kv_tsql name)
    kv_static_library(${name} ${tsql_sources})
    target_include_directories(${name} ${${name}_scope} ${CMAKE_SOURCE_DIR}/embedded ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${name} ${${name}_scope} kv_warnings ${sqlite_library} ${ARGN})
    set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
endfunction()
kv_tsql(tsql)
# Optimised in every build, as is the driver: a tool of the tests, not what they test, and they wait for it.
target_compile_options(tsql PRIVATE $<$<CONFIG:Debug>:-O2>)
kv_tsql(kv_tsql_for_tests kv_sanitize)

if(driver_sources)
    set(exports ${CMAKE_SOURCE_DIR}/cmake/driver-exports.map)
    add_library(kvembedded SHARED ${driver_sources})
    target_include_directories(kvembedded PRIVATE ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(kvembedded PRIVATE tsql ${odbcinst_library})
    target_compile_options(kvembedded PRIVATE $<$<CONFIG:Debug>:-O2>)
    # The driver manager exports the same SQL* names: inside the driver they must mean the driver's own.
    target_link_options(kvembedded PRIVATE -static-libgcc -static-libstdc++ -Wl,-Bsymbolic
                                           -Wl,--version-script=${exports} -Wl,--no-undefined)
    set_target_properties(kvembedded PROPERTIES LINK_DEPENDS ${exports})
endif()
