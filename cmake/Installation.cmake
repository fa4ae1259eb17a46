# Where things are installed, the same for "cmake --install" and for the packages.
include(GNUInstallDirs)
set(PLUGIN_INSTALL_DIR "${CMAKE_INSTALL_LIBDIR}/loyalty-till")
# Programs, libraries and the plugin find the libraries wherever the installation was moved. An
# installed Log4Qt is anywhere.
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}" "$ORIGIN/..")
set(CMAKE_INSTALL_RPATH_USE_LINK_PATH ON)

# Makes a shared library one that others build against, as LoyaltyTill::NAME. The headers are
# included by their paths below `root`.
function(publish_library target name root)
    set_target_properties(${target} PROPERTIES
        VERSION "${PROJECT_VERSION}" SOVERSION "${PROJECT_VERSION_MAJOR}" EXPORT_NAME "${name}")
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS "${root}" FILES ${ARGN})
    install(TARGETS ${target} EXPORT LoyaltyTill
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT till NAMELINK_COMPONENT dev
        FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/loyalty-till" COMPONENT dev)
endfunction()
