# vaultpad_efl: the parts of EFL that the library uses. Debian's pkg-config files name folders that no package installs,
# so CMake's own imported target for them is refused; here the existing folders are taken.
pkg_check_modules(EFL REQUIRED elementary ecore ecore-evas ecore-wl2 efreet evas eina)

add_library(vaultpad_efl INTERFACE)
# The architecture's own folder is searched in any case, and is the wrong one when compiling for another.
foreach(directory IN LISTS EFL_INCLUDE_DIRS)
    if(EXISTS ${directory} AND NOT directory MATCHES "^/usr/include/[^/]*-linux-gnu[^/]*$")
        target_include_directories(vaultpad_efl SYSTEM INTERFACE ${directory})
    endif()
endforeach()
# Only what is called: pkg-config lists every library of EFL.
foreach(library IN ITEMS ecore_evas ecore_wl2 ecore evas eina)
    target_link_libraries(vaultpad_efl INTERFACE ${library})
endforeach()
# For what is linked with the toolkit's windows; the shared library loads them on demand.
add_library(vaultpad_efl_windows INTERFACE)
target_link_libraries(vaultpad_efl_windows INTERFACE vaultpad_efl elementary efreet)
target_link_directories(vaultpad_efl INTERFACE ${EFL_LIBRARY_DIRS})
target_compile_options(vaultpad_efl INTERFACE ${EFL_CFLAGS_OTHER})
