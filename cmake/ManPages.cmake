# Manual pages of the tool and of each of its commands, made of what these say of themselves by
# help2man; none where that is not there. Read twice: by the build, and as a script that makes them.
if(NOT CMAKE_SCRIPT_MODE_FILE)
  find_program(ORKRULE_HELP2MAN help2man)
  set(orkrule_man_folder ${PROJECT_BINARY_DIR}/man)
  if(ORKRULE_HELP2MAN AND NOT ORKRULE_SANITIZE)
    set(stamp ${PROJECT_BINARY_DIR}/man.stamp)
    add_custom_command(
      OUTPUT ${stamp}
      COMMAND ${CMAKE_COMMAND} -D help2man=${ORKRULE_HELP2MAN} -D tool=$<TARGET_FILE:orkrule>
        -D folder=${orkrule_man_folder} -D version=${PROJECT_VERSION} -P ${CMAKE_CURRENT_LIST_FILE}
      COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
      DEPENDS orkrule OrkRule orkrule_messages ${CMAKE_CURRENT_LIST_FILE}
      COMMENT "Manual pages"
      VERBATIM)
    add_custom_target(orkrule_man ALL DEPENDS ${stamp})
    install(DIRECTORY ${orkrule_man_folder}/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
      FILES_MATCHING PATTERN *.1)
  endif()
  return()
endif()

set(ENV{LC_ALL} C)
# Not by its path, which may have blanks in it: help2man hands the words to a shell.
get_filename_component(bin ${tool} DIRECTORY)
execute_process(COMMAND ${tool} help --commands
  OUTPUT_VARIABLE commands OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" ";" commands "${commands}")

file(REMOVE_RECURSE ${folder})
file(MAKE_DIRECTORY ${folder})
foreach(command IN LISTS commands ITEMS "")
  string(STRIP "orkrule ${command}" words)
  string(REPLACE " " "-" name "${words}")
  string(REPLACE " " ";" arguments "help ${command}")
  execute_process(COMMAND ${tool} ${arguments}
    OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE "^[^\n]*\n(.*)$" "\\1" about "${help}")  # behind the usage
  string(REGEX REPLACE "\n\n.*$" "" about "${about}")
  string(REPLACE "\n" " " about "${about}")
  string(REGEX REPLACE "\\.$" "" about "${about}")
  execute_process(
    COMMAND ${help2man} --no-info --manual=OrkRule --version-string=${version} "--name=${about}"
      "./${words}"
    WORKING_DIRECTORY ${bin} OUTPUT_VARIABLE page COMMAND_ERROR_IS_FATAL ANY)
  string(TOUPPER "${name}" title)
  string(REPLACE ".TH ORKRULE " ".TH ${title} " page "${page}")
  string(REPLACE "\"${words} ${version}\"" "\"OrkRule ${version}\"" page "${page}")
  string(REPLACE "\n${words} \\- " "\n${name} \\- " page "${page}")
  # Lines of a shell are neither filled nor joined.
  string(FIND "${page}" "\n.SH EXAMPLES\n" at)
  if(NOT at EQUAL -1)
    string(SUBSTRING "${page}" 0 ${at} begin)
    string(SUBSTRING "${page}" ${at} -1 examples)
    string(REGEX REPLACE "\n\\.[IHPT]P" "" examples "${examples}")
    string(REPLACE ".SH EXAMPLES\n" ".SH EXAMPLES\n.nf\n" examples "${examples}")
    set(page "${begin}${examples}.fi\n")
  endif()
  file(WRITE ${folder}/${name}.1 "${page}")
endforeach()
