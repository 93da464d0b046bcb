# The installed headers: each says once that an older standard won't do, none needs one that is not installed, and all
# of them together compile.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

file(GLOB_RECURSE headers RELATIVE "${root}/include" "${root}/include/*.h")
if(NOT "quillon/quillon.h" IN_LIST headers)
  message(FATAL_ERROR "quillon/quillon.h is not installed")
endif()

# What a compiler says of a file that includes one header, under an older standard.
function(say_under_17 header)
  file(WRITE ${folder}/old.cpp "#include <${header}>\n")
  execute_process(COMMAND ${CXX} -std=c++17 "-I${root}/include" ${ARGN} ${folder}/old.cpp
                  OUTPUT_QUIET ERROR_VARIABLE said)
  string(REGEX MATCHALL "error:[^\n]*" errors "${said}")
  set(errors "${errors}" PARENT_SCOPE)
endfunction()

set(all "")
foreach(header ${headers})
  string(APPEND all "#include <${header}>\n")
  file(STRINGS "${root}/include/${header}" internal REGEX "#include.*(/internal/|/posix/|/windows/|/tree/)")
  if(internal)
    message(FATAL_ERROR "${header} is installed, and includes what is not: ${internal}")
  endif()
  say_under_17(${header} -E)
  if(NOT errors MATCHES "^error:[^;]*quillon needs C\\+\\+20[^;]*$")
    message(FATAL_ERROR "${header} says under C++17: ${errors}")
  endif()
endforeach()
say_under_17(quillon/quillon.h -fsyntax-only)
if(NOT errors MATCHES "^error:[^;]*quillon needs C\\+\\+20[^;]*$")
  message(FATAL_ERROR "quillon.h adds to its one message: ${errors}")
endif()

file(WRITE ${folder}/all.cpp "${all}")
run(${CXX} -std=c++20 -Wall -Wextra -Wpedantic -Werror "-I${root}/include" -fsyntax-only ${folder}/all.cpp)
