# SPDX-License-Identifier: MIT
# quietrix_add_bundle(TARGET BUNDLE name SOURCES file… RESOURCES file… [DIRECTORY directory])
#
# A bundle that the Settings application opens: the module TARGET, whose name stands as CFBundleExecutable in the
# bundle's Info.plist, and beside it the resources, paths below the current source directory that are kept as they are
# (an Info.plist, en.lproj/Localizable.strings, images). It is made in DIRECTORY/name.bundle, in the current binary
# directory unless that is given, and follows each change of a resource.
function(quietrix_add_bundle target)
    cmake_parse_arguments(arg "" "BUNDLE;DIRECTORY" "SOURCES;RESOURCES" ${ARGN})
    if(NOT arg_BUNDLE OR NOT arg_SOURCES)
        message(FATAL_ERROR "quietrix_add_bundle(${target}): BUNDLE and SOURCES are needed.")
    endif()
    if(NOT arg_DIRECTORY)
        set(arg_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}")
    endif()
    set(directory "${arg_DIRECTORY}/${arg_BUNDLE}.bundle")

    add_library(${target} MODULE ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE QuietrixPlatform::platform)
    set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX "" LIBRARY_OUTPUT_DIRECTORY "${directory}")

    set(copies)
    foreach(file IN LISTS arg_RESOURCES)
        cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE OUTPUT_VARIABLE source)
        cmake_path(RELATIVE_PATH source BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" OUTPUT_VARIABLE name)
        if(name MATCHES "^\\.\\./")
            message(FATAL_ERROR "quietrix_add_bundle(${target}): ${file} is not below ${CMAKE_CURRENT_SOURCE_DIR}.")
        endif()
        add_custom_command(OUTPUT "${directory}/${name}"
            COMMAND ${CMAKE_COMMAND} -E copy "${source}" "${directory}/${name}"
            DEPENDS "${source}" VERBATIM)
        list(APPEND copies "${directory}/${name}")
    endforeach()
    add_custom_target(${target}-resources ALL DEPENDS ${copies})
    add_dependencies(${target} ${target}-resources)
endfunction()
