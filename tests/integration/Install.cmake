# Installs into an empty folder and checks that what arrives is what should: nothing less, and no
# header, library or program that is our own affair.
# cmake -D build= -D prefix= -D libdir= -D includes= -D version= -D tool= -P Install.cmake
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
  list(APPEND expected bin/orkrule)
endif()
file(GLOB_RECURSE actual RELATIVE ${prefix} ${prefix}/*)
list(FILTER actual EXCLUDE REGEX "OrkRuleTargets-[a-z]+\\.cmake$")

list(SORT expected)
list(SORT actual)
if(NOT actual STREQUAL expected)
  message(FATAL_ERROR "expected ${expected}\nactual ${actual}")
endif()
