# SPDX-License-Identifier: MIT
# What `cmake --install` puts where. Two components: "program" runs, "development" builds bundles. Everything finds
# everything else by ways from its own place, so that the whole can be moved.
include(CMakePackageConfigHelpers)

# Code that only these programs open.
set(private_libraries "${CMAKE_INSTALL_LIBDIR}/quietrix")
set(shared_files "${CMAKE_INSTALL_DATADIR}/quietrix")
set(helper_programs "${CMAKE_INSTALL_LIBEXECDIR}/quietrix")
set(cmake_package "${CMAKE_INSTALL_LIBDIR}/cmake/QuietrixPlatform")
set(headers "${CMAKE_INSTALL_INCLUDEDIR}/quietrix")

# run_path(TARGET DIRECTORY): from the directory that the target is installed into to the libraries.
function(run_path target directory)
    file(RELATIVE_PATH way "/${directory}" "/${private_libraries}")
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${way}")
endfunction()

foreach(program IN ITEMS quietrix-settings quietrix)
    run_path(${program} "${CMAKE_INSTALL_BINDIR}")
    install(TARGETS ${program} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT program)
endforeach()
# Manuals and completions are what the programs themselves tell of their command lines.
# usage_file(PROGRAM FORM DIRECTORY NAME): asks the program for the form, and installs that under the name.
set(usage_files)
function(usage_file program form directory name)
    set(file "${CMAKE_BINARY_DIR}/usage-texts/${form}/${name}")
    set(filter cat)
    if(name MATCHES "[.]gz$")
        set(filter "gzip -9n")
    endif()
    add_custom_command(OUTPUT "${file}"
        COMMAND ${CMAKE_COMMAND} -E make_directory "${CMAKE_BINARY_DIR}/usage-texts/${form}"
        COMMAND sh -c "set -e; text=$(\"$1\" --usage \"$2\"); printf '%s\\n' \"$text\" | ${filter} > \"$0\""
            "${file}" "$<TARGET_FILE:${program}>" "${form}"
        DEPENDS ${program} VERBATIM)
    install(FILES "${file}" DESTINATION "${CMAKE_INSTALL_DATADIR}/${directory}" COMPONENT program)
    set(usage_files ${usage_files} "${file}" PARENT_SCOPE)
endfunction()
foreach(program IN ITEMS quietrix-settings quietrix)
    usage_file(${program} man man/man1 ${program}.1.gz)
    usage_file(${program} bash bash-completion/completions ${program})
    usage_file(${program} zsh zsh/vendor-completions _${program})
    usage_file(${program} fish fish/vendor_completions.d ${program}.fish)
endforeach()
add_custom_target(usage-texts ALL DEPENDS ${usage_files})

run_path(SpringBoard "${helper_programs}")
install(TARGETS SpringBoard RUNTIME DESTINATION "${helper_programs}" COMPONENT program)

run_path(velmora "${private_libraries}")
install(TARGETS platform velmora EXPORT QuietrixPlatformTargets
    LIBRARY DESTINATION "${private_libraries}" COMPONENT program NAMELINK_COMPONENT development
    INCLUDES DESTINATION "${headers}")

# install_folder(BUILT DIRECTORY …): what is built as a folder, into the directory. What an earlier installation has put
# into that folder and this one does not have goes: it is nobody else's, and an old text or image would be found.
function(install_folder built directory)
    cmake_path(GET built FILENAME name)
    string(CONFIGURE [[
        set(place "@directory@/@name@")
        if(NOT IS_ABSOLUTE "${place}")
            set(place "${CMAKE_INSTALL_PREFIX}/${place}")
        endif()
        set(place "$ENV{DESTDIR}${place}")
        file(GLOB_RECURSE files RELATIVE "${place}" "${place}/*")
        foreach(file IN LISTS files)
            if(NOT EXISTS "@built@/${file}")
                file(REMOVE "${place}/${file}")
                cmake_path(GET file PARENT_PATH folder)
                if(folder)
                    execute_process(COMMAND rmdir -p --ignore-fail-on-non-empty "${folder}" WORKING_DIRECTORY "${place}" ERROR_QUIET)
                endif()
            endif()
        endforeach()
    ]] code @ONLY)
    install(CODE "${code}" COMPONENT program)
    install(DIRECTORY "${built}" DESTINATION "${directory}" COMPONENT program ${ARGN})
endfunction()

# Bundles hold code, so they stand with the libraries.
run_path(QuietrixPreferences "${private_libraries}/QuietrixPreferences.bundle")
install_folder("${CMAKE_BINARY_DIR}/share/QuietrixPreferences.bundle" "${private_libraries}"
    PATTERN QuietrixPreferences EXCLUDE)
install(TARGETS QuietrixPreferences
    LIBRARY DESTINATION "${private_libraries}/QuietrixPreferences.bundle" COMPONENT program)

install_folder("${CMAKE_BINARY_DIR}/share/Settings" "${shared_files}")
if(QUIETRIX_WEB)
    install_folder("${CMAKE_BINARY_DIR}/share/page" "${shared_files}")
endif()

# The desktop and the user's service manager. Neither names a prefix: both look on a path of their own.
set(desktop_name com.velmora.QuietrixSettings)
set(desktop_source "${CMAKE_SOURCE_DIR}/packaging/desktop/${desktop_name}")
string(TIMESTAMP RELEASE_DATE "%Y-%m-%d" UTC)
configure_file("${desktop_source}.metainfo.xml.in" "${CMAKE_BINARY_DIR}/${desktop_name}.metainfo.xml" @ONLY)
install(FILES "${desktop_source}.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications" COMPONENT program)
install(FILES "${desktop_source}.svg" DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps"
    COMPONENT program)
install(FILES "${CMAKE_BINARY_DIR}/${desktop_name}.metainfo.xml"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo" COMPONENT program)
install(FILES "${CMAKE_SOURCE_DIR}/packaging/systemd/quietrix-settings.socket"
    "${CMAKE_SOURCE_DIR}/packaging/systemd/quietrix-settings.service"
    DESTINATION lib/systemd/user COMPONENT program)

install(DIRECTORY "${CMAKE_SOURCE_DIR}/platform" "${CMAKE_SOURCE_DIR}/velmora" DESTINATION "${headers}"
    COMPONENT development FILES_MATCHING PATTERN "*.h")
install(EXPORT QuietrixPlatformTargets NAMESPACE QuietrixPlatform:: DESTINATION "${cmake_package}"
    COMPONENT development)
configure_package_config_file("${CMAKE_SOURCE_DIR}/cmake/QuietrixPlatformConfig.cmake.in"
    "${CMAKE_BINARY_DIR}/QuietrixPlatformConfig.cmake" INSTALL_DESTINATION "${cmake_package}")
# Bundles are built for an interface version; a project asks for that.
write_basic_package_version_file("${CMAKE_BINARY_DIR}/QuietrixPlatformConfigVersion.cmake"
    VERSION "${QUIETRIX_PLATFORM_INTERFACE_VERSION}" COMPATIBILITY ExactVersion)
install(FILES "${CMAKE_BINARY_DIR}/QuietrixPlatformConfig.cmake"
    "${CMAKE_BINARY_DIR}/QuietrixPlatformConfigVersion.cmake" "${CMAKE_SOURCE_DIR}/cmake/QuietrixBundle.cmake"
    DESTINATION "${cmake_package}" COMPONENT development)
