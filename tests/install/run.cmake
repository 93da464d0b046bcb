# Installs the build into a folder of its own, and builds the README's example against it: by the CMake package,
# and by pkg-config.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(result)
    message(FATAL_ERROR "${ARGN}\n${output}")
  endif()
endfunction()

set(folder ${BUILD}/installed)
file(REMOVE_RECURSE ${folder})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${folder}/root)
run(${CMAKE_COMMAND} -S ${SOURCE}/tests/install -B ${folder}/build -DCMAKE_PREFIX_PATH=${folder}/root
    -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_CXX_FLAGS=${FLAGS}" -DEXAMPLE=${SOURCE}/examples/programs.cpp)
run(${CMAKE_COMMAND} --build ${folder}/build)
run(${folder}/build/programs ${SOURCE}/data/sample.ts)

file(GLOB_RECURSE packages ${folder}/root/*.pc)
cmake_path(GET packages PARENT_PATH package_folder)
run(${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${package_folder} sh -c
    "${CXX} ${FLAGS} -std=c++20 ${SOURCE}/examples/programs.cpp -o ${folder}/by_pkg_config $(pkg-config --define-variable=prefix=${folder}/root --cflags --libs --static quillon)")
run(${folder}/by_pkg_config ${SOURCE}/data/sample.ts)
