# Installs into an empty folder and checks that what arrives is what should: nothing less, and no
# header, library or program that is our own affair.
# cmake -D build= -D prefix= -D libdir= -D includes= -D version= -D tool= -D man= -P Install.cmake
file(REMOVE_RECURSE ${prefix})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${build} --prefix ${prefix}
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

string(REGEX MATCH "^[0-9]+" major ${version})
file(GLOB expected RELATIVE ${includes} ${includes}/*.h)
list(TRANSFORM expected PREPEND include/orkrule/)
list(APPEND expected
  ${libdir}/Hearth.resource.dll
  ${libdir}/libOrkRule.so
  ${libdir}/libOrkRule.so.${major}
  ${libdir}/libOrkRule.so.${version}
  ${libdir}/cmake/OrkRule/OrkRuleConfig.cmake
  ${libdir}/cmake/OrkRule/OrkRuleConfigVersion.cmake
  ${libdir}/cmake/OrkRule/OrkRuleTargets.cmake
  ${libdir}/pkgconfig/orkrule.pc)
if(tool)
  list(APPEND expected bin/orkrule
    share/bash-completion/completions/orkrule share/zsh/site-functions/_orkrule)
endif()
if(man)
  # One page for each command that the tool knows, and one for the tool.
  execute_process(COMMAND ${prefix}/bin/orkrule help --commands
    OUTPUT_VARIABLE commands OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE " " "-" commands "${commands}")
  string(REPLACE "\n" ";" commands "${commands}")
  list(TRANSFORM commands PREPEND share/man/man1/orkrule-)
  list(TRANSFORM commands APPEND .1)
  list(APPEND expected share/man/man1/orkrule.1 ${commands})
endif()
file(GLOB_RECURSE actual RELATIVE ${prefix} ${prefix}/*)
list(FILTER actual EXCLUDE REGEX "OrkRuleTargets-[a-z]+\\.cmake$")

list(SORT expected)
list(SORT actual)
if(NOT actual STREQUAL expected)
  message(FATAL_ERROR "expected ${expected}\nactual ${actual}")
endif()
