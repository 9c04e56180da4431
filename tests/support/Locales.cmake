# The POSIX locales that tests ask for, made into the build folder: a bare machine has none of them,
# and installing one needs root. Test programs find them by LOCPATH.
find_program(ORKRULE_LOCALEDEF localedef REQUIRED)

set(orkrule_locale_folder ${PROJECT_BINARY_DIR}/locale)
set(orkrule_locales en_US en_GB zh_CN de_DE ja_JP ko_KR)

set(orkrule_locale_stamps)
foreach(name IN LISTS orkrule_locales)
  set(stamp ${orkrule_locale_folder}/${name}.UTF-8/LC_IDENTIFICATION)
  add_custom_command(OUTPUT ${stamp}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${orkrule_locale_folder}
    COMMAND ${ORKRULE_LOCALEDEF} -i ${name} -f UTF-8 ${orkrule_locale_folder}/${name}.UTF-8
    COMMENT "Making the test locale ${name}.UTF-8"
    VERBATIM)
  list(APPEND orkrule_locale_stamps ${stamp})
endforeach()
add_custom_target(orkrule_test_locales DEPENDS ${orkrule_locale_stamps})
