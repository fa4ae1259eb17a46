# The Debian packages, a component each.
find_program(HELP2MAN help2man REQUIRED)
find_program(GZIP gzip REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_get_variable(unit_dir systemd systemdsystemunitdir)
if(NOT unit_dir)
    set(unit_dir "${CMAKE_INSTALL_PREFIX}/lib/systemd/system")
endif()
set(package_till loyalty-till)
set(package_window loyalty-till-window)
set(package_simulator loyalty-simulator)
set(package_dev loyalty-till-dev)
set(made "${CMAKE_CURRENT_BINARY_DIR}/debian")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "Maintainers of loyalty-plugin <maintainers@loyalty-plugin.invalid>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL till window simulator dev)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_TILL_PACKAGE_NAME "${package_till}")
set(CPACK_DEBIAN_TILL_PACKAGE_SECTION misc)
# Qt loads its SQLite driver while the till runs, so no library names it. pkill is of procps.
set(CPACK_DEBIAN_TILL_PACKAGE_DEPENDS "adduser, libqt6sql6-sqlite, procps")
set(CPACK_DEBIAN_TILL_PACKAGE_RECOMMENDS "ca-certificates, logrotate")
set(CPACK_DEBIAN_TILL_PACKAGE_SUGGESTS "bash-completion, prometheus-node-exporter")
set(CPACK_DEBIAN_TILL_DESCRIPTION "till with the loyalty plugin
A till that finds its customers at a loyalty service, registers new ones and
reports every sale as an order; an order waits in the till's store while the
service cannot be reached. With the plugin for tills of other makers.")
set(CPACK_DEBIAN_WINDOW_PACKAGE_NAME "${package_window}")
set(CPACK_DEBIAN_WINDOW_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_WINDOW_PACKAGE_RECOMMENDS "qt6-wayland | xserver-xorg")
set(CPACK_DEBIAN_WINDOW_DESCRIPTION "till with the loyalty plugin, as a window
The till of the package loyalty-till on a screen that is touched or clicked.")
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_NAME "${package_simulator}")
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_DEPENDS libqt6sql6-sqlite)
set(CPACK_DEBIAN_SIMULATOR_DESCRIPTION "loyalty service on loopback
The operations of the loyalty service that a till uses, on this machine and
with faults on request: to try a till and to show it.")
set(CPACK_DEBIAN_DEV_PACKAGE_NAME "${package_dev}")
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "qt6-base-dev")
set(CPACK_DEBIAN_DEV_DESCRIPTION "development files of the loyalty plugin's till platform
Headers and libraries for a till of one's own that loads the loyalty plugin
and delivers its orders, with a small example.")

string(TIMESTAMP CHANGELOG_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)

# A file, compressed as Debian wants it.
function(install_compressed source name destination component)
    add_custom_command(OUTPUT "${made}/${component}/${name}.gz"
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${made}/${component}"
        COMMAND "${GZIP}" -9nc "${source}" > "${made}/${component}/${name}.gz"
        DEPENDS "${source}" VERBATIM)
    add_custom_target("${component}_${name}" ALL DEPENDS "${made}/${component}/${name}.gz")
    install(FILES "${made}/${component}/${name}.gz"
        DESTINATION "${destination}" COMPONENT ${component})
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    set(PACKAGE_NAME "${package_${component}}")
    set(doc_dir "${CMAKE_INSTALL_DATADIR}/doc/${PACKAGE_NAME}")
    configure_file(debian/changelog.in "${made}/${component}.changelog" @ONLY)
    install_compressed("${made}/${component}.changelog" changelog.Debian "${doc_dir}" ${component})
    install_compressed("${PROJECT_SOURCE_DIR}/CHANGELOG.md" changelog "${doc_dir}" ${component})
    install(FILES debian/copyright DESTINATION "${doc_dir}" COMPONENT ${component})
endforeach()

# A program's manual page, from its own words, and its completion.
function(document_program target component summary)
    set(page "${made}/${target}.1")
    add_custom_command(OUTPUT "${page}"
        COMMAND "${HELP2MAN}" --no-info --name=${summary} --output "${page}" $<TARGET_FILE:${target}>
        DEPENDS ${target} VERBATIM)
    install_compressed("${page}" ${target}.1 "${CMAKE_INSTALL_MANDIR}/man1" ${component})
    install(FILES completion/${target} COMPONENT ${component}
        DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
endfunction()
document_program(till till "sell with the loyalty plugin, and look after what it has left")
document_program(till-window window "the till with the loyalty plugin, as a window")
document_program(simulator simulator "loyalty service on loopback")

# The till's settings, log and services.
install(FILES till.conf DESTINATION /etc/xdg/till COMPONENT till
    PERMISSIONS OWNER_READ OWNER_WRITE)
install(FILES logrotate RENAME loyalty-till DESTINATION /etc/logrotate.d COMPONENT till)
file(WRITE "${made}/conffiles" "/etc/xdg/till/till.conf\n/etc/logrotate.d/loyalty-till\n")
file(WRITE "${made}/triggers" "activate-noawait ldconfig\n")
install(DIRECTORY systemd/ DESTINATION "${unit_dir}" COMPONENT till)
set(CPACK_DEBIAN_TILL_PACKAGE_CONTROL_EXTRA
    "${made}/conffiles"
    "${made}/triggers"
    "${CMAKE_CURRENT_SOURCE_DIR}/debian/postinst"
    "${CMAKE_CURRENT_SOURCE_DIR}/debian/prerm"
    "${CMAKE_CURRENT_SOURCE_DIR}/debian/postrm")

install(FILES alerts.yml "${PROJECT_SOURCE_DIR}/docs/check.md" "${PROJECT_SOURCE_DIR}/docs/commands.md"
    "${PROJECT_SOURCE_DIR}/docs/fleet.md" "${PROJECT_SOURCE_DIR}/docs/masks.md"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package_till}" COMPONENT till)

install(FILES till-window.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications"
    COMPONENT window)

# For whoever builds a till.
set(doc_dir "${CMAKE_INSTALL_DATADIR}/doc/${package_dev}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION "${doc_dir}" COMPONENT dev)
install(FILES "${PROJECT_SOURCE_DIR}/docs/host.md" DESTINATION "${doc_dir}" COMPONENT dev)

include(CPack)
cpack_add_component(window DEPENDS till)
cpack_add_component(dev DEPENDS till)
