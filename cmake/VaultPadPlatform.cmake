# What answers the library's platform calls: the television's own libraries, or the host platform.
#
# vaultpad_platform   link it into libvaultpad.so
# VAULTPAD_ON_HOST    whether host platform, emulated trusted application, demo, tools and tests are built
set(VAULTPAD_PLATFORM "auto" CACHE STRING
    "host, television, or auto: television where all of its packages are found, host elsewhere")
set_property(CACHE VAULTPAD_PLATFORM PROPERTY STRINGS auto host television)

# Service, pkg-config module, headers of platform/include. The modules are cache variables VAULTPAD_MODULE_<SERVICE>,
# because vendors name those of their own services differently; NONE has no name that is in general use.
set(VAULTPAD_PLATFORM_MODULES
    LOG              dlog                      "dlog"
    SETTINGS         vconf                     "vconf"
    PATHS            libtzplatform-config      "tzplatform-config"
    PRIVILEGE        cynara-client             "cynara"
    SENSOR           capi-system-sensor        "sensor"
    SOUND            capi-media-sound-manager  "sound-manager"
    BLUETOOTH_AUDIO  capi-network-bluetooth    "bt-audio"
    UI_ORIENTATION   NONE                      "ui-orientation"
    DISPLAY_ROTATOR  NONE                      "display-rotator"
    KEY_ROUTER       NONE                      "key-router"
    TRUSTED_CORE     NONE                      "trusted-core"
    TRUSTED_UI       NONE                      "trusted-ui"
    CRYPTO_CORE      NONE                      "crypto-core")

# Lists the modules that are there as pkg_check_modules() prefixes, and says in a line each which are not.
function(vaultpad_find_television FOUND MISSING)
    set(found)
    set(missing)
    set(rows ${VAULTPAD_PLATFORM_MODULES})
    while(rows)
        list(POP_FRONT rows service module headers)
        set(variable VAULTPAD_MODULE_${service})
        string(REPLACE NONE "" module ${module})
        set(${variable} "${module}" CACHE STRING "pkg-config module of the service in vaultpad-platform/${headers}.h")
        mark_as_advanced(${variable})
        if(NOT ${variable})
            string(APPEND missing "  ${headers}: name its pkg-config module with -D ${variable}=...\n")
            continue()
        endif()
        pkg_check_modules(TELEVISION_${service} QUIET IMPORTED_TARGET ${${variable}})
        if(TELEVISION_${service}_FOUND)
            list(APPEND found PkgConfig::TELEVISION_${service})
        else()
            string(APPEND missing "  ${headers}: pkg-config finds no ${${variable}}; install its development package, "
                                  "or give another name with -D ${variable}=...\n")
        endif()
    endwhile()
    set(${FOUND} "${found}" PARENT_SCOPE)
    set(${MISSING} "${missing}" PARENT_SCOPE)
endfunction()

if(NOT VAULTPAD_PLATFORM MATCHES "^(auto|host|television)$")
    message(FATAL_ERROR "VAULTPAD_PLATFORM is ${VAULTPAD_PLATFORM}: use auto, host or television")
endif()
set(VAULTPAD_ON_HOST ON)
add_library(vaultpad_platform INTERFACE)
if(NOT VAULTPAD_PLATFORM STREQUAL "host")
    vaultpad_find_television(modules missing)
    if(NOT missing)
        set(VAULTPAD_ON_HOST OFF)
        target_link_libraries(vaultpad_platform INTERFACE ${modules})
    elseif(VAULTPAD_PLATFORM STREQUAL "television")
        message(FATAL_ERROR "VAULTPAD_PLATFORM=television, but of the television's services these are missing:\n"
                            "${missing}")
    endif()
endif()
if(VAULTPAD_ON_HOST)
    target_link_libraries(vaultpad_platform INTERFACE vaultpad_host_platform)
endif()
