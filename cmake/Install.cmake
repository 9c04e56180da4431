# What `cmake --install` gives: library, message file beside it, headers, tool, and how others find
# them (a CMake package and a pkg-config file). All paths in it are relative: the tree may be moved.
include(CMakePackageConfigHelpers)

set(orkrule_package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/OrkRule)
set(orkrule_include_folder ${CMAKE_INSTALL_INCLUDEDIR}/orkrule)
set(orkrule_generated ${PROJECT_BINARY_DIR}/package)

install(TARGETS OrkRule EXPORT OrkRuleTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/Hearth.resource.dll
  DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${orkrule_include_folder}
  FILES_MATCHING PATTERN *.h)

if(TARGET orkrule)
  install(TARGETS orkrule RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  file(RELATIVE_PATH bin_to_library ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(orkrule PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_library}")
  # Under the names by which both shells find it.
  install(FILES ${orkrule_completion_folder}/bash DESTINATION
    ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME orkrule)
  install(FILES ${orkrule_completion_folder}/zsh DESTINATION
    ${CMAKE_INSTALL_DATADIR}/zsh/site-functions RENAME _orkrule)
endif()

install(EXPORT OrkRuleTargets NAMESPACE OrkRule:: DESTINATION ${orkrule_package_folder})
configure_package_config_file(cmake/OrkRuleConfig.cmake.in
  ${orkrule_generated}/OrkRuleConfig.cmake INSTALL_DESTINATION ${orkrule_package_folder})
write_basic_package_version_file(${orkrule_generated}/OrkRuleConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${orkrule_generated}/OrkRuleConfig.cmake
    ${orkrule_generated}/OrkRuleConfigVersion.cmake
  DESTINATION ${orkrule_package_folder})

set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pkgconfig_to_prefix
  ${CMAKE_INSTALL_PREFIX}/${pkgconfig_folder} ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/orkrule.pc.in ${orkrule_generated}/orkrule.pc @ONLY)
install(FILES ${orkrule_generated}/orkrule.pc DESTINATION ${pkgconfig_folder})
