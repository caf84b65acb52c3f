# Lays out a client folder, which is emptied first, and runs the plain host in it:
#   cmake -DHOST=... -DPLUGIN=... -DFOLDER=... [-DEMULATOR=...] -P run.cmake
# HOST is the built plainhost; its modules stand beside it. PLUGIN is xrefresher.dll.
cmake_minimum_required(VERSION 3.25)
foreach(given HOST PLUGIN FOLDER EMULATOR)
    if(NOT "${${given}}" STREQUAL "")
        file(REAL_PATH "${${given}}" ${given})
    elseif(NOT given STREQUAL "EMULATOR")
        message(FATAL_ERROR "run.cmake: ${given} is missing")
    endif()
endforeach()
get_filename_component(built ${HOST} DIRECTORY)
get_filename_component(name ${HOST} NAME)
file(GLOB modules ${built}/*.dll)

file(REMOVE_RECURSE ${FOLDER})
file(COPY ${HOST} ${modules} DESTINATION ${FOLDER})
file(COPY ${PLUGIN} DESTINATION ${FOLDER}/xnplugins)
# The plug-in changes the list of installed files and never makes one.
file(WRITE ${FOLDER}/home/OrvSecurity/config/uninst/filelist.xml "<Root><FileList/></Root>\n")

execute_process(COMMAND ${EMULATOR} ${FOLDER}/${name} WORKING_DIRECTORY ${FOLDER}
    TIMEOUT 60 RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "plainhost: exit status ${status}")
endif()
