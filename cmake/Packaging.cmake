# The Debian package: the program and the files it loads beside itself under
# /opt/norvale-backup, a menu entry and the window icon. Destinations are relative to the
# prefix, so the package (prefix /) and `cmake --install --prefix <scratch root>` lay out alike.
if(NOT NV_BUILD_GUI)
    return()
endif()

set(nv_program_dir opt/norvale-backup)

install(TARGETS norvale-backup RUNTIME DESTINATION ${nv_program_dir})
# The copy clip and anything else the program opens next to its own executable.
# The AVI form of the clip is the Windows program's.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/assets/install/ DESTINATION ${nv_program_dir}
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ
    PATTERN "*.AVI" EXCLUDE)

install(FILES "${NV_HELP_FILE}" DESTINATION ${nv_program_dir}
    PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

install(FILES ${CMAKE_CURRENT_LIST_DIR}/norvale-backup.desktop DESTINATION usr/share/applications)
foreach(size 32 48 256)
    if(size EQUAL 256)
        set(picture window-icon.png)
    else()
        set(picture window-icon-${size}.png)
    endif()
    install(FILES ${PROJECT_SOURCE_DIR}/assets/pictures/${picture}
        DESTINATION usr/share/icons/hicolor/${size}x${size}/apps RENAME norvale-backup.png)
endforeach()

# A command on the PATH; the program still finds its folder, since /proc/self/exe names the
# target of the link.
file(CREATE_LINK /${nv_program_dir}/norvale-backup ${CMAKE_CURRENT_BINARY_DIR}/norvale-backup.link
    SYMBOLIC)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/norvale-backup.link DESTINATION usr/bin
    RENAME norvale-backup)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME norvale-backup)
set(CPACK_PACKAGE_VENDOR Tessaly)
set(CPACK_PACKAGE_CONTACT "Tessaly <support@tessaly.example>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Tessaly <support@tessaly.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The program loads Qt's Dutch texts for its dialogs; dpkg-shlibdeps cannot see that.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-translations-l10n")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "backup tool for the data files of Norvale
Copies Norvale's data files, and any files the user adds, into dated folders
on a removable drive, and brings them back through a five-step wizard.
The interface is in Dutch.
.
Settings live in the user's configuration folder and backups on the drive;
removing or purging the package leaves both alone.")
# No maintainer scripts: the user's settings and backups are never the package's to touch.

include(CPack)
