# KVHEADERS.dll: the window, the COM classes, the type library and the resources.
kv_sources(window_sources src/window)
kv_sources(com_sources src/com)

kv_static_library(kvheaders_window ${window_sources})
target_link_libraries(kvheaders_window ${kvheaders_window_scope} kvheaders_core)

if(com_sources)
    set(idl ${CMAKE_SOURCE_DIR}/src/com/kvheaders.idl)
    set(generated ${CMAKE_BINARY_DIR}/com)
    file(MAKE_DIRECTORY ${generated})
    file(GLOB resource_files CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/com/*.rc ${CMAKE_SOURCE_DIR}/src/window/*.rc)
    file(GLOB idl_parts CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/com/*.idl ${CMAKE_SOURCE_DIR}/src/com/idl/*.idl)

    # The idl compiler needs oaidl.idl and stdole2.tlb; the first is the project's own, the second is Wine's.
    find_program(KV_WIDL i686-w64-mingw32-widl REQUIRED)
    set(widl ${KV_WIDL} -D KVHEADERS_TYPELIB_VERSION=${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR} -I ${CMAKE_SOURCE_DIR}/src/com/idl -L /usr/lib/i386-linux-gnu/wine/i386-windows)
    set(typelib ${generated}/kvheaders.tlb)
    set(idl_outputs ${typelib} ${generated}/kvheaders_idl.h)
    add_custom_command(
        OUTPUT ${idl_outputs}
        COMMAND ${widl} -t -o ${typelib} ${idl}
        COMMAND ${widl} -h -o ${generated}/kvheaders_idl.h ${idl}
        DEPENDS ${idl_parts}
        COMMENT "Compiling the type library"
        VERBATIM)

    add_library(kvheaders_com OBJECT ${com_sources} ${idl_outputs})
    target_include_directories(kvheaders_com PUBLIC ${generated})
    target_link_libraries(kvheaders_com PUBLIC kvheaders_window)

    # Exceptions stay inside, the runtime is linked in, and the file is stripped: one DLL that needs Windows alone.
    enable_language(RC)
    add_library(KVHEADERS SHARED $<TARGET_OBJECTS:kvheaders_com> ${resource_files}
                                 ${CMAKE_SOURCE_DIR}/src/com/kvheaders.def)
    set_target_properties(KVHEADERS PROPERTIES PREFIX "" OUTPUT_NAME KVHEADERS LINKER_LANGUAGE CXX)
    set_source_files_properties(${resource_files} PROPERTIES OBJECT_DEPENDS ${typelib})
    target_include_directories(KVHEADERS PRIVATE ${generated} ${CMAKE_SOURCE_DIR}/src/com ${CMAKE_SOURCE_DIR}/src/window
                                                 ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(KVHEADERS PRIVATE kvheaders_window)
    target_link_options(KVHEADERS PRIVATE -s -Wl,--gc-sections -Wl,--enable-stdcall-fixup)

    # The manifests for use without registration: classes and interfaces are those of kvheaders.idl.
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${idl})
    file(READ ${idl} idl_text)
    string(REPLACE "]" ">" idl_text "${idl_text}") # which would hold a list's elements together
    set(guid "uuid\\(([-0-9a-f]+)\\)[^>]*>[ \n]*")
    string(REGEX MATCH "${guid}library" library_match "${idl_text}")
    set(KVHEADERS_TYPE_LIBRARY "{${CMAKE_MATCH_1}}")
    string(REGEX MATCHALL "${guid}coclass [A-Za-z]+" classes "${idl_text}")
    string(REGEX MATCHALL "${guid}interface _[A-Za-z]+" interfaces "${idl_text}")
    set(KVHEADERS_CLASSES)
    foreach(class IN LISTS classes)
        string(REGEX MATCH "${guid}coclass ([A-Za-z]+)" class "${class}")
        string(APPEND KVHEADERS_CLASSES "
    <comClass clsid=\"{${CMAKE_MATCH_1}}\" progid=\"KVHEADERS.${CMAKE_MATCH_2}\"
              tlbid=\"${KVHEADERS_TYPE_LIBRARY}\"/>")
    endforeach()
    set(KVHEADERS_INTERFACES)
    foreach(interface IN LISTS interfaces)
        string(REGEX MATCH "${guid}interface (_[A-Za-z]+)" interface "${interface}")
        string(APPEND KVHEADERS_INTERFACES "
  <comInterfaceExternalProxyStub name=\"${CMAKE_MATCH_2}\" iid=\"{${CMAKE_MATCH_1}}\"
                                 proxyStubClsid32=\"{00020424-0000-0000-C000-000000000046}\"
                                 tlbid=\"${KVHEADERS_TYPE_LIBRARY}\"/>")
    endforeach()
    configure_file(${CMAKE_SOURCE_DIR}/package/KVHEADERS.X.manifest.in ${CMAKE_BINARY_DIR}/KVHEADERS.X.manifest @ONLY)
    configure_file(${CMAKE_SOURCE_DIR}/package/host.exe.manifest.in ${CMAKE_BINARY_DIR}/host.exe.manifest @ONLY)

    # The example of a host in C++.
    add_executable(host_example ${CMAKE_SOURCE_DIR}/examples/host.cpp)
    target_include_directories(host_example PRIVATE ${generated})
    target_link_libraries(host_example PRIVATE kv_options ole32 oleaut32 uuid)
    add_dependencies(host_example KVHEADERS)
endif()
