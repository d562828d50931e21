# What every target is compiled with, and two helpers for folders that may still be empty.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(WIN32)
    # The component is loaded into hosts of any kind: small counts for more than the last instruction.
    set(CMAKE_CXX_FLAGS_RELEASE "-Os -DNDEBUG -ffunction-sections -fdata-sections")
else()
    set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
endif()
set(CMAKE_C_FLAGS_RELEASE ${CMAKE_CXX_FLAGS_RELEASE})
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# kv_warnings: for every target. kv_options: for all that is built for this project's own programs.
add_library(kv_warnings INTERFACE)
target_compile_options(kv_warnings INTERFACE -Wall -Wextra $<$<BOOL:${KV_WERROR}>:-Werror>)
# GCC 12, optimising, sees impossible overlaps inside std::string's own operator+.
target_compile_options(kv_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

add_library(kv_options INTERFACE)
target_link_libraries(kv_options INTERFACE kv_warnings)
if(WIN32)
    target_compile_definitions(kv_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
endif()
add_library(kv_sanitize INTERFACE)
if(KV_SANITIZE)
    target_compile_options(kv_sanitize INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                                 -fno-omit-frame-pointer)
    target_link_options(kv_sanitize INTERFACE -fsanitize=address,undefined)
endif()
target_link_libraries(kv_options INTERFACE kv_sanitize)

# kv_sources(VARIABLE folder...): the *.cpp files directly in these folders.
function(kv_sources variable)
    set(found)
    foreach(folder IN LISTS ARGN)
        file(GLOB here CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp)
        list(APPEND found ${here})
    endforeach()
    set(${variable} ${found} PARENT_SCOPE)
endfunction()

# kv_static_library(name source...): a static library, or an empty one to link with while there are no sources.
# The variable ${name}_scope is the keyword for its public properties.
macro(kv_static_library name)
    if("${ARGN}" STREQUAL "")
        add_library(${name} INTERFACE)
        set(${name}_scope INTERFACE)
    else()
        add_library(${name} STATIC ${ARGN})
        set(${name}_scope PUBLIC)
    endif()
endmacro()

# kv_tool_headers(target scope [folder...]): tools/ and the folders named, for includes in quotes alone. As a folder of
# <...> it would give the script tools/format to a standard library that asks for <format>.
function(kv_tool_headers target scope)
    foreach(folder IN ITEMS tools ${ARGN})
        target_compile_options(${target} ${scope} "SHELL:-iquote ${CMAKE_SOURCE_DIR}/${folder}")
    endforeach()
endfunction()
