# Installs the build, moves what was installed, and looks at it: it names no folder of this machine, and its program runs.
# The shared library is stripped, as packages have it: the checks of its interface want it with debug information.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

file(REMOVE_RECURSE ${folder})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${folder}/root --strip)
file(RENAME ${folder}/root ${root})

file(GLOB_RECURSE texts "${root}/*.cmake" "${root}/*.pc" "${root}/*.h" "${root}/*.inc")
set(looked_at ${texts})
if(CONFIGURATION STREQUAL "Release")  # debug information names the sources
  file(GLOB_RECURSE binaries "${root}/*.a" "${root}/*.so")
  list(APPEND looked_at ${binaries})
endif()
foreach(file ${looked_at})
  foreach(path "${SOURCE}" "${folder}" "${ISAL}")
    if(path)
      string(REGEX REPLACE "([][+.*()^$?|])" "\\\\\\1" pattern "${path}")
      file(STRINGS "${file}" found REGEX "${pattern}")
      if(found)
        message(FATAL_ERROR "${file} names ${path}: ${found}")
      endif()
    endif()
  endforeach()
endforeach()

run("${root}/bin/quillon" --version)
if(NOT output STREQUAL "quillon ${VERSION}\n")
  message(FATAL_ERROR "the installed program says: ${output}")
endif()

# The manual and the completions, where those who read them look.
foreach(file share/man/man1/quillon.1 share/bash-completion/completions/quillon share/zsh/site-functions/_quillon
             share/fish/vendor_completions.d/quillon.fish)
  if(NOT EXISTS "${root}/${file}")
    message(FATAL_ERROR "${file} is not installed")
  endif()
  file(STRINGS "${root}/${file}" names REGEX "summary")
  if(NOT names)
    message(FATAL_ERROR "${file} names no command")
  endif()
endforeach()
