# The locales of the television's languages, for a host on which they are not installed: LOCPATH names the folder.
#
# vaultpad_read_languages(LANGUAGES LOCALES)   reads locale/languages.txt into two lists of equal length
# target vaultpad_locales                      makes VAULTPAD_LOCALE_PATH

set(VAULTPAD_LOCALE_PATH ${CMAKE_BINARY_DIR}/locale CACHE PATH "Where the locales of a development host are put")

function(vaultpad_read_languages languages_variable locales_variable)
    set(table ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/locale/languages.txt)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${table})
    file(STRINGS ${table} lines ENCODING UTF-8)
    set(languages)
    set(locales)
    foreach(line IN LISTS lines)
        if(line MATCHES "^#")
            continue()
        endif()
        if(NOT line MATCHES "^([a-z]+(_[A-Z]+)?) +([a-z]+_[A-Z]+\\.UTF-8) +[A-Z]")
            message(FATAL_ERROR "${table}: \"${line}\": "
                                "write a language, a locale like ko_KR.UTF-8 and a name")
        endif()
        list(APPEND languages ${CMAKE_MATCH_1})
        list(APPEND locales ${CMAKE_MATCH_3})
    endforeach()
    set(${languages_variable} ${languages} PARENT_SCOPE)
    set(${locales_variable} ${locales} PARENT_SCOPE)
endfunction()

find_program(VAULTPAD_LOCALEDEF localedef REQUIRED)
find_path(VAULTPAD_LOCALE_SOURCES locales/POSIX PATHS /usr/share/i18n NO_DEFAULT_PATH
          DOC "Folder with the locales' definitions")
if(NOT VAULTPAD_LOCALE_SOURCES)
    message(FATAL_ERROR "/usr/share/i18n/locales is missing; install the package locales")
endif()
vaultpad_read_languages(LANGUAGES LOCALES)
set(LOCALE_FILES)
foreach(locale IN LISTS LOCALES)
    string(REPLACE ".UTF-8" "" definition ${locale})
    # localedef writes this file last, and every other one may be a link to that of another locale.
    set(written ${VAULTPAD_LOCALE_PATH}/${locale}/LC_IDENTIFICATION)
    add_custom_command(
        OUTPUT ${written}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${VAULTPAD_LOCALE_PATH}
        COMMAND ${VAULTPAD_LOCALEDEF} -i ${definition} -f UTF-8 ${VAULTPAD_LOCALE_PATH}/${locale}
        DEPENDS ${VAULTPAD_LOCALE_SOURCES}/locales/${definition}
        COMMENT "Making the locale ${locale}")
    list(APPEND LOCALE_FILES ${written})
endforeach()
add_custom_target(vaultpad_locales ALL DEPENDS ${LOCALE_FILES})
