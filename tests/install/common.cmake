cmake_minimum_required(VERSION 3.25)

# What the scripts of this folder share. The installed tree has been moved since it was installed, to a folder with
# spaces in its name.
set(folder ${BUILD}/installed)
set(root "${folder}/a moved root")

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(result)
    message(FATAL_ERROR "${ARGN}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

# Configures a project with the build's own tools: there may be no others.
macro(configure source build)
  file(REMOVE_RECURSE ${build})
  run(${CMAKE_COMMAND} -S ${source} -B ${build} -G ${GENERATOR} -DCMAKE_MAKE_PROGRAM=${MAKE}
      -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_CXX_FLAGS=${FLAGS}" -DEXAMPLE=${SOURCE}/examples/programs.cpp ${ARGN})
endmacro()
