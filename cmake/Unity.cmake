# XREFRESHER_UNITY, set by the presets: the sources of one folder are compiled as one. `./dev lint`
# looks at each source by itself.
option(XREFRESHER_UNITY "Compile the sources of a folder at once, for a short build" OFF)

# xr_unity(TARGET [ALONE file...]): called where the target is made. The anonymous namespaces of
# a folder's files become one; files in which names would clash stay alone.
function(xr_unity target)
    cmake_parse_arguments(ARG "" "" "ALONE" ${ARGN})
    if(NOT XREFRESHER_UNITY)
        return()
    endif()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    # It takes an included source for a header.
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-subobject-linkage>)
    get_target_property(sources ${target} SOURCES)
    foreach(source ${sources})
        get_filename_component(folder "${source}" DIRECTORY)
        string(MAKE_C_IDENTIFIER "folder_${folder}" group)
        set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
    endforeach()
    set_source_files_properties(${ARG_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
