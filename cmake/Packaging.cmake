# Installation of the program and its Debian package:
#     cmake -S . -B build/package -G Ninja -DCMAKE_BUILD_TYPE=Release -DMERCANTEL_TESTS=OFF
#     cmake --build build/package --target package
# gives build/package/mercantel_<version>_<arch>.deb (a build that accepts the demo update key,
# such as the demo's, refuses to package). Everything goes to the usual places of a
# desktop system: the programs in bin, the menu entry and its icon in the shared applications
# and the hicolor icon theme, the user guide in the program's shared data (F1 opens it from
# there), the copyright and changelog in its doc folder.
include(GNUInstallDirs)

set(package_name mercantel)
set(guide_source ${PROJECT_SOURCE_DIR}/docs/guide)
set(icons_source ${PROJECT_SOURCE_DIR}/resources/icons)

# F1 finds the guide beside the built program as well as in an installed one.
add_custom_target(user-guide ALL
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${guide_source} $<TARGET_FILE_DIR:mercantel>/guide
    COMMENT "Copying the user guide beside the program")

install(TARGETS mercantel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# The dealer's command-line tools, those this tree builds. The demo builder, the stand-in
# service program and the demo update server serve the tests and the demo only.
set(installed_tools)
foreach(tool dbfsql stocksearch fetchupdates convertlists)
    if(TARGET ${tool})
        install(TARGETS ${tool} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
        list(APPEND installed_tools ${tool})
    endif()
endforeach()

install(FILES ${PROJECT_SOURCE_DIR}/packaging/mercantel.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
# What software centres show of the program.
configure_file(${PROJECT_SOURCE_DIR}/packaging/mercantel.metainfo.xml
    ${PROJECT_BINARY_DIR}/packaging/com.norvale.mercantel.metainfo.xml @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/packaging/com.norvale.mercantel.metainfo.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${icons_source}/mercantel.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size 16 32 48 64 128 256)
    set(picture ${icons_source}/png/mercantel-${size}.png)
    if(size EQUAL 32)
        set(picture ${icons_source}/png/mercantel.png)
    elseif(size EQUAL 64)
        set(picture ${icons_source}/png/mercantel@2x.png)
    endif()
    install(FILES ${picture} RENAME mercantel.png
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
install(DIRECTORY ${guide_source}/ DESTINATION ${CMAKE_INSTALL_DATADIR}/${package_name}/guide)

# Installs a text compressed as Debian wants it: gzip -9, without a time stamp.
function(install_compressed source destination)
    get_filename_component(name ${source} NAME)
    set(copy ${PROJECT_BINARY_DIR}/packaging/${name})
    configure_file(${source} ${copy} @ONLY)
    add_custom_command(OUTPUT ${copy}.gz
        COMMAND gzip -9nkf ${copy}
        DEPENDS ${copy}
        COMMENT "Compressing ${name} for the package")
    add_custom_target(compressed-${name} ALL DEPENDS ${copy}.gz)
    install(FILES ${copy}.gz DESTINATION ${destination} RENAME ${name}.gz)
endfunction()

set(docdir ${CMAKE_INSTALL_DATADIR}/doc/${package_name})
install_compressed(${PROJECT_SOURCE_DIR}/packaging/changelog ${docdir})
foreach(program mercantel ${installed_tools})
    set(manual ${PROJECT_SOURCE_DIR}/packaging/${program}.1)
    if(EXISTS ${manual})
        install_compressed(${manual} ${CMAKE_INSTALL_MANDIR}/man1)
    endif()
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/packaging/copyright DESTINATION ${docdir})

set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${package_name})
set(CPACK_PACKAGE_VENDOR "Norvale Systems")
set(CPACK_PACKAGE_CONTACT "Norvale Systems <support@norvale.example>")
set(CPACK_PACKAGE_INSTALL_DIRECTORY /usr)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://www.norvale.example/mercantel/")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Qt's window-system plugins live apart from its libraries; the browser opens the guide.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-translations-l10n, xdg-utils")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "price lists and catalogues for parts dealers (Tallyrate)")
set(CPACK_PACKAGE_DESCRIPTION
"Mercantel, Tallyrate in its English edition, keeps the suppliers' price lists
and the maker's catalogues of an automotive or hardware parts dealer up to
date. It activates and configures price lists, associates them with catalogue
categories, downloads updates from the maker's server, shows the newsletters
and looks part numbers up in the dealer's parts file.

The package holds the desktop program, the dealer's command-line tools and the
user guide in French and English.")
include(CPack)
