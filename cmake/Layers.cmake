# One static library per folder of src/. Its name, its sources, and the layers below it that it
# may use; `./dev lint` checks the includes against the same order.
function(veltaro_layer name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_library(veltaro_${name} STATIC ${ARG_SOURCES})
    target_include_directories(veltaro_${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(veltaro_${name} PUBLIC ${ARG_LINKS} PRIVATE veltaro_warnings)
endfunction()
