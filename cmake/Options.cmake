# What every target of this project is compiled with.
add_library(orkrule_options INTERFACE)
target_compile_options(orkrule_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # This compiler sees overlapping copies inside std::string where there are none (its bug 105651).
  target_compile_options(orkrule_options INTERFACE -Wno-restrict)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # What these say depends on what was inlined, even on the length of this folder's name: they are
  # shown, but do not stop a build.
  target_compile_options(orkrule_options INTERFACE
    -Wno-error=array-bounds -Wno-error=maybe-uninitialized
    -Wno-error=stringop-overflow -Wno-error=stringop-overread)
endif()
if(ORKRULE_SANITIZE)
  target_compile_options(orkrule_options INTERFACE
    -fsanitize=${ORKRULE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(orkrule_options INTERFACE -fsanitize=${ORKRULE_SANITIZE})
endif()
