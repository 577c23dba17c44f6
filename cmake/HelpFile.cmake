# The help file "NV BU tool.chm": the user guide, page by page with its pictures, a table of
# contents and an index, compiled by chmcmd beside the program, which reads it through chmlib.
# Without these tools the program would ship without help, so configuring stops instead.
find_program(NV_CHMCMD chmcmd)
find_path(NV_CHMLIB_INCLUDE chm_lib.h)
find_library(NV_CHMLIB chm)
find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
    pkg_check_modules(NV_MD4C_HTML QUIET IMPORTED_TARGET md4c-html)
endif()
set(nv_help_missing "")
if(NOT NV_CHMCMD)
    list(APPEND nv_help_missing "chmcmd (package fp-utils)")
endif()
if(NOT NV_CHMLIB_INCLUDE OR NOT NV_CHMLIB)
    list(APPEND nv_help_missing "chmlib (package libchm-dev)")
endif()
if(NOT NV_MD4C_HTML_FOUND)
    list(APPEND nv_help_missing "md4c-html (packages libmd4c-dev libmd4c-html0-dev)")
endif()
if(nv_help_missing)
    list(JOIN nv_help_missing ", " nv_help_missing)
    message(FATAL_ERROR "The help file cannot be built without ${nv_help_missing}. "
        "Run: bash scripts/install-deps.sh")
endif()

add_library(nv_chmlib INTERFACE IMPORTED GLOBAL)
target_include_directories(nv_chmlib INTERFACE ${NV_CHMLIB_INCLUDE})
target_link_libraries(nv_chmlib INTERFACE ${NV_CHMLIB})

set(NV_HELP_NAME "NV BU tool.chm")
# Beside the program of the build, so a program started from the build folder has its help.
set(NV_HELP_FILE "${CMAKE_BINARY_DIR}/src/${NV_HELP_NAME}")
set(nv_help_pages "${CMAKE_BINARY_DIR}/help-pages")
file(GLOB nv_help_pictures CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/screenshots/*.png)
add_custom_command(OUTPUT "${NV_HELP_FILE}"
    COMMAND help_pages ${PROJECT_SOURCE_DIR}/docs/gebruikershandleiding.md ${nv_help_pages}
        "${NV_HELP_NAME}"
    COMMAND ${CMAKE_COMMAND} -E rm -f "${NV_HELP_NAME}"
    # chmcmd writes into the current folder and exits with 0 even when it fails: the rename
    # is what fails then.
    COMMAND ${NV_CHMCMD} --no-html-scan --verbosity 0 ${nv_help_pages}/help.hhp
    COMMAND ${CMAKE_COMMAND} -E rename "${NV_HELP_NAME}" "${NV_HELP_FILE}"
    WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
    DEPENDS help_pages ${PROJECT_SOURCE_DIR}/docs/gebruikershandleiding.md ${nv_help_pictures}
    COMMENT "Compiling the help file ${NV_HELP_NAME}"
    VERBATIM)
add_custom_target(help_file ALL DEPENDS "${NV_HELP_FILE}")
