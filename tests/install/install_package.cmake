# Builds the README's example against the installed library, by the CMake package and by pkg-config, and all examples by
# their own list.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(without -DCMAKE_DISABLE_FIND_PACKAGE_Boost=ON)
if(TYPE STREQUAL "SHARED_LIBRARY")
  list(APPEND without -DCMAKE_DISABLE_FIND_PACKAGE_EXPAT=ON -DCMAKE_DISABLE_FIND_PACKAGE_isal=ON)
endif()
configure(${CMAKE_CURRENT_LIST_DIR}/package ${folder}/build "-DCMAKE_PREFIX_PATH=${root}" -DVERSION=${VERSION} ${without})
run(${CMAKE_COMMAND} --build ${folder}/build)
run(${folder}/build/programs ${SOURCE}/data/sample.ts)
configure(${SOURCE}/examples ${folder}/examples "-DCMAKE_PREFIX_PATH=${root}" ${without})
run(${CMAKE_COMMAND} --build ${folder}/examples)
run(${folder}/examples/services ${SOURCE}/data/sample.ts)

file(GLOB_RECURSE package "${root}/*.pc")
cmake_path(GET package PARENT_PATH package_folder)
cmake_path(GET package_folder PARENT_PATH library_folder)
set(static --static)
if(TYPE STREQUAL "SHARED_LIBRARY")
  set(static "")
endif()
# The shell reads the result once more, as spaces in it are quoted.
run(${CMAKE_COMMAND} -E env "PKG_CONFIG_PATH=${package_folder}" sh -c
    "eval \"${CXX} ${FLAGS} -std=c++20 '${SOURCE}/examples/programs.cpp' -o '${folder}/by_pkg_config' $(pkg-config --cflags --libs ${static} quillon)\"")
run(${CMAKE_COMMAND} -E env "LD_LIBRARY_PATH=${library_folder}" ${folder}/by_pkg_config ${SOURCE}/data/sample.ts)
