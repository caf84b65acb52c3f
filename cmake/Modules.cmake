# xr_module(TARGET FILENAME EXPORTS name... SOURCES file...)
# A shared library that is bound by name at run time: it has exactly the given exports
# and carries its Windows file name on every system, as soname too.
function(xr_module target filename)
    cmake_parse_arguments(ARG "" "" "EXPORTS;SOURCES;LIBRARIES" ${ARGN})
    add_library(${target} SHARED ${ARG_SOURCES})
    get_filename_component(stem ${filename} NAME_WLE)
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME ${stem} SUFFIX ".dll"
                          IMPORT_PREFIX "")
    target_link_libraries(${target} PRIVATE xr_flags ${ARG_LIBRARIES})
    if(WIN32)
        set(definition ${CMAKE_CURRENT_BINARY_DIR}/${target}.def)
        list(JOIN ARG_EXPORTS "\n    " exports)
        file(CONFIGURE OUTPUT ${definition} CONTENT "EXPORTS\n    @exports@\n" @ONLY)
        target_sources(${target} PRIVATE ${definition})
    else()
        set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
        list(JOIN ARG_EXPORTS "; " exports)
        file(CONFIGURE OUTPUT ${script} CONTENT "{ global: @exports@; local: *; };\n" @ONLY)
        target_link_options(${target} PRIVATE -Wl,--version-script=${script}
                            -Wl,-soname,${filename} -Wl,--no-undefined-version)
        if(NOT XREFRESHER_SANITIZE) # there the program has what a sanitizer wants
            target_link_options(${target} PRIVATE -Wl,-z,defs)
        endif()
        # The script decides what is seen, so the exports themselves must not be hidden. It
        # makes unique symbols local too, with which a module would never be unloaded.
        set_target_properties(${target} PROPERTIES NO_SONAME ON LINK_DEPENDS ${script}
                              CXX_VISIBILITY_PRESET default)
    endif()
endfunction()
