# Code that nobody calls is left out of what is linked; it needs sections of its own.
if(MINGW)
    add_compile_options(-ffunction-sections -fdata-sections)
    add_link_options(-Wl,--gc-sections)
endif()

# xr_release(TARGET RESOURCE): what a module needs to be shipped for Windows: its version
# resource, an image that loads anywhere and whose data is never run, and its symbols in a
# file beside it (a .pdb with Visual Studio).
function(xr_release target resource)
    if(NOT WIN32)
        return()
    endif()
    get_filename_component(name ${resource} NAME_WLE)
    configure_file(${resource} ${CMAKE_CURRENT_BINARY_DIR}/${name} @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${name})
    if(MSVC)
        target_link_options(${target} PRIVATE /DYNAMICBASE /HIGHENTROPYVA /NXCOMPAT /DEBUG)
        return()
    endif()
    target_link_options(${target} PRIVATE -Wl,--dynamicbase,--high-entropy-va,--nxcompat)
    set(file $<TARGET_FILE:${target}>)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_OBJCOPY} --only-keep-debug ${file} ${file}.debug
        COMMAND ${CMAKE_STRIP} --strip-all ${file}
        COMMAND ${CMAKE_OBJCOPY} --add-gnu-debuglink=${file}.debug ${file}
        VERBATIM)
endfunction()
