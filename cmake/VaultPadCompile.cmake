# How this project's own code is compiled: link vaultpad_compile into every target of ours.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

add_library(vaultpad_compile INTERFACE)
target_compile_options(vaultpad_compile INTERFACE -Wall -Wextra -Wconversion -Wsign-conversion -Wshadow)
if(VAULTPAD_WARNINGS_AS_ERRORS)
    target_compile_options(vaultpad_compile INTERFACE -Werror)
endif()
if(VAULTPAD_SANITIZERS)
    add_compile_options(-fsanitize=${VAULTPAD_SANITIZERS} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${VAULTPAD_SANITIZERS})
endif()

# Hardening of everything that is built; tests/hardening looks for its traces in what comes out.
include(CheckPIESupported)
check_pie_supported()
add_compile_options(-fstack-protector-strong)
add_link_options(LINKER:-z,relro,-z,now,-z,noexecstack)
# The checks need an optimised build, and would hide accesses from the sanitizers' own. Distributions set another level.
if(NOT VAULTPAD_SANITIZERS)
    add_compile_options("$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()
