# Run while the acceptance kit is put together: the scenarios that can be played on any server, with their transcripts and
# the rows that they load. Left out are those that
#   - need faults, which the embedded database alone has,
#   - choose server, database or data source themselves,
#   - have a statement that fails: its message is the server's, in the words of its version.
set(from ${CMAKE_CURRENT_LIST_DIR}/../tests/scenarios)
set(to $ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/scenarios)
file(GLOB_RECURSE names RELATIVE ${from} ${from}/*.scenario)
foreach(name IN LISTS names)
    string(REGEX REPLACE "scenario$" "expected" approved ${name})
    file(STRINGS ${from}/${name} special
         REGEX "^(quiet +|without +\"[^\"]*\" +)?((fail|cut|refuse|allow)( |$)|host (SqlServerName|SqlDbName|SQLDSN) )")
    file(STRINGS ${from}/${approved} failing REGEX "^sql! ")
    if(special OR failing)
        continue()
    endif()
    file(STRINGS ${from}/${name} loads REGEX "^(quiet +)?data ")
    list(TRANSFORM loads REPLACE "^(quiet +)?data +" "")
    cmake_path(GET name PARENT_PATH folder)
    list(TRANSFORM loads PREPEND "${folder}/")
    foreach(file IN LISTS name approved loads)
        cmake_path(SET file NORMALIZE "./${file}")
        cmake_path(GET file PARENT_PATH folder)
        file(COPY ${from}/${file} DESTINATION ${to}/${folder})
    endforeach()
endforeach()
