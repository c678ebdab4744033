# Where things are installed, and where programs and libraries find each other. The build tree has the same folders, so
# that one relative path holds in both, and under whatever prefix the tree is installed.
#
# Components: runtime (library, helpers, resources), development, host (host platform, emulated trusted application),
# tools (demo, vaultpad-layout).
include(GNUInstallDirs)
foreach(variable IN ITEMS CMAKE_INSTALL_BINDIR CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_DATADIR)
    if(IS_ABSOLUTE ${${variable}})
        message(FATAL_ERROR "${variable} is ${${variable}}: give it relative to CMAKE_INSTALL_PREFIX")
    endif()
endforeach()
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR})
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/${CMAKE_INSTALL_BINDIR})

# Sets RESULT to the path that leads from one folder below the prefix to another.
function(vaultpad_relative_path FROM TO RESULT)
    file(RELATIVE_PATH path /${FROM} /${TO})
    set(${RESULT} ${path} PARENT_SCOPE)
endfunction()

vaultpad_relative_path(${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_LIBDIR} VAULTPAD_LIBRARIES_FROM_PROGRAMS)
set(CMAKE_INSTALL_RPATH $ORIGIN $ORIGIN/${VAULTPAD_LIBRARIES_FROM_PROGRAMS})
list(REMOVE_DUPLICATES CMAKE_INSTALL_RPATH)

# The folder that stands for the platform's read-only application root: helpers are run from, and resources read from,
# "<root>/vaultpad". The default is the television's. A relative one is meant from the library's folder.
set(VAULTPAD_APP_ROOT "/usr/apps" CACHE STRING "Application root; relative: seen from the library's folder")
if(IS_ABSOLUTE "${VAULTPAD_APP_ROOT}")
    set(VAULTPAD_APP_STAGE ${CMAKE_BINARY_DIR}/root)
    set(VAULTPAD_APP_DESTINATION ${VAULTPAD_APP_ROOT}/vaultpad)
else()
    set(VAULTPAD_APP_STAGE ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${VAULTPAD_APP_ROOT})
    set(VAULTPAD_APP_DESTINATION ${CMAKE_INSTALL_LIBDIR}/${VAULTPAD_APP_ROOT}/vaultpad)
endif()
# Where the build puts layouts, images and translations.
set(VAULTPAD_RES_STAGE ${VAULTPAD_APP_STAGE}/vaultpad/res)
# Where they are drawn, before they get the form in which they are staged.
set(VAULTPAD_RES_DRAWN ${CMAKE_BINARY_DIR}/res/svg)

# What other projects build with: headers, a CMake package and a pkg-config file.
function(vaultpad_install_development_files)
    include(CMakePackageConfigHelpers)
    set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/vaultpad)
    configure_package_config_file(cmake/vaultpad-config.cmake.in ${CMAKE_BINARY_DIR}/vaultpad-config.cmake
                                  INSTALL_DESTINATION ${folder})
    write_basic_package_version_file(${CMAKE_BINARY_DIR}/vaultpad-config-version.cmake COMPATIBILITY SameMajorVersion)
    install(EXPORT vaultpad NAMESPACE vaultpad:: FILE vaultpad-targets.cmake DESTINATION ${folder}
            COMPONENT development)
    install(FILES ${CMAKE_BINARY_DIR}/vaultpad-config.cmake ${CMAKE_BINARY_DIR}/vaultpad-config-version.cmake
            DESTINATION ${folder} COMPONENT development)

    vaultpad_relative_path(${CMAKE_INSTALL_LIBDIR}/pkgconfig / PC_PREFIX)
    configure_file(cmake/vaultpad.pc.in ${CMAKE_BINARY_DIR}/vaultpad.pc @ONLY)
    install(FILES ${CMAKE_BINARY_DIR}/vaultpad.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
    install(DIRECTORY include/vaultpad DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
    install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
endfunction()
