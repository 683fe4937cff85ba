# SPDX-License-Identifier: MIT
# Debian packages of what is installed: `cpack --config BUILD/CPackConfig.cmake` puts them into BUILD/packages.
set(DEBIAN_RELEASE 1)
set(DEBIAN_VERSION "${PROJECT_VERSION}-${DEBIAN_RELEASE}")

set(program_package quietrix-settings)
set(development_package libquietrix-platform-dev)
set(document_files "${CMAKE_BINARY_DIR}/documents")

# Licences: ours, and of what is part of the programs and of the page.
file(READ "${CMAKE_SOURCE_DIR}/LICENSE" LICENSE_TEXT)
configure_file("${CMAKE_SOURCE_DIR}/packaging/debian/copyright.in" "${document_files}/copyright-programs" @ONLY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/LICENSE")
set(copyright_parts "${document_files}/copyright-programs")
if(QUIETRIX_WEB)
    list(APPEND copyright_parts "${PAGE_LICENCES}")
endif()
add_custom_command(OUTPUT "${document_files}/copyright"
    COMMAND sh -c "cat \"$@\" > \"$0\"" "${document_files}/copyright" ${copyright_parts}
    DEPENDS ${copyright_parts} VERBATIM)

string(TIMESTAMP PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file("${CMAKE_SOURCE_DIR}/packaging/debian/changelog.in" "${document_files}/changelog.Debian" @ONLY)
add_custom_command(OUTPUT "${document_files}/changelog.Debian.gz"
    COMMAND sh -c "gzip -9nc \"$1\" > \"$0\"" "${document_files}/changelog.Debian.gz" "${document_files}/changelog.Debian"
    DEPENDS "${document_files}/changelog.Debian" VERBATIM)
add_custom_target(package-documents ALL
    DEPENDS "${document_files}/copyright" "${document_files}/changelog.Debian.gz")

foreach(component program development)
    install(FILES "${document_files}/copyright" "${document_files}/changelog.Debian.gz"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${${component}_package}" COMPONENT ${component})
    install(FILES "${CMAKE_SOURCE_DIR}/packaging/debian/overrides-${component}"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" RENAME "${${component}_package}"
        COMPONENT ${component})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quietrix-settings)
set(CPACK_PACKAGE_VENDOR Velmora)
set(CPACK_PACKAGE_CONTACT "Velmora <support@velmora.com>")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL program development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${DEBIAN_RELEASE})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME ${program_package})
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS xdg-utils)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SUGGESTS "libquietrix-platform-dev, network-manager, sound-theme-freedesktop")
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "settings of a phone that silences itself
Quietrix silences a phone while chosen calendar events run, within active
hours, or on chosen Wi-Fi networks. These are its settings on a computer,
shown in a browser or driven from scripts.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${development_package})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "quietrix-settings (= ${DEBIAN_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "cmake, g++ (>= 4:12)")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "headers to write bundles for Quietrix Settings
The headers of the phone's frameworks and of the maker's shared settings
library, and a CMake package that builds bundles with them which Quietrix
Settings opens.")
include(CPack)
