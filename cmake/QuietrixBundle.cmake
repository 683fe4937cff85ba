# SPDX-License-Identifier: MIT
# quietrix_copy_files(OUTPUTS NAME FROM directory TO directory FILES name…)
#
# Has the build copy the files, and sets OUTPUTS to the copies, for a target that depends on them. A copy whose file is no
# longer in the list goes when the list is read; what others put into the directory stays. The list is kept as
# NAME.txt in the current binary directory, which changes when the list does.
function(quietrix_copy_files outputs name)
    cmake_parse_arguments(arg "" "FROM;TO" "FILES" ${ARGN})
    set(list_file "${CMAKE_CURRENT_BINARY_DIR}/${name}.txt")
    set(earlier)
    if(EXISTS "${list_file}")
        file(STRINGS "${list_file}" earlier)
    endif()
    set(gone ${earlier})
    if(arg_FILES)
        list(REMOVE_ITEM gone ${arg_FILES})
    endif()
    foreach(file IN LISTS gone)
        file(REMOVE "${arg_TO}/${file}")
        cmake_path(GET file PARENT_PATH folder)
        if(folder AND IS_DIRECTORY "${arg_TO}")
            execute_process(COMMAND rmdir -p --ignore-fail-on-non-empty "${folder}" WORKING_DIRECTORY "${arg_TO}" ERROR_QUIET)
        endif()
    endforeach()
    if(NOT EXISTS "${list_file}" OR NOT earlier STREQUAL "${arg_FILES}")
        list(JOIN arg_FILES "\n" text)
        file(WRITE "${list_file}" "${text}\n")
    endif()

    set(copies)
    foreach(file IN LISTS arg_FILES)
        add_custom_command(OUTPUT "${arg_TO}/${file}"
            COMMAND ${CMAKE_COMMAND} -E copy "${arg_FROM}/${file}" "${arg_TO}/${file}"
            DEPENDS "${arg_FROM}/${file}" VERBATIM)
        list(APPEND copies "${arg_TO}/${file}")
    endforeach()
    set(${outputs} ${copies} PARENT_SCOPE)
endfunction()

# quietrix_add_bundle(TARGET BUNDLE name SOURCES file… RESOURCES file… [DIRECTORY directory])
#
# A bundle that the Settings application opens: the module TARGET, whose name stands as CFBundleExecutable in the
# bundle's Info.plist, and beside it the resources, paths below the current source directory that are kept as they are
# (an Info.plist, en.lproj/Localizable.strings, images). It is made in DIRECTORY/name.bundle, in the current binary
# directory unless that is given, and follows each change of a resource, also that there is none of that name any more.
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

    set(names)
    foreach(file IN LISTS arg_RESOURCES)
        cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE OUTPUT_VARIABLE source)
        cmake_path(RELATIVE_PATH source BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" OUTPUT_VARIABLE name)
        if(name MATCHES "^\\.\\./")
            message(FATAL_ERROR "quietrix_add_bundle(${target}): ${file} is not below ${CMAKE_CURRENT_SOURCE_DIR}.")
        endif()
        list(APPEND names "${name}")
    endforeach()
    quietrix_copy_files(copies ${target}-resources FROM "${CMAKE_CURRENT_SOURCE_DIR}" TO "${directory}" FILES ${names})
    add_custom_target(${target}-resources ALL DEPENDS ${copies})
    add_dependencies(${target} ${target}-resources)
endfunction()
