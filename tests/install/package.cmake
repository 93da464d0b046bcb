# The package for Windows, made, unpacked and used: its program runs, and the README's example is built with it and runs.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(folder ${BUILD}/package)
file(REMOVE_RECURSE ${folder})
run(${CPACK} --config ${BUILD}/CPackConfig.cmake -B ${folder})
file(GLOB archive ${folder}/quillon-${VERSION}-*.zip)
file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION "${folder}/a moved root")
file(GLOB root "${folder}/a moved root/*")

foreach(file bin/quillon.exe bin/libquillon.dll bin/libstdc++-6.dll lib/libquillon.dll.a include/quillon/quillon.h
             lib/cmake/quillon/quillon-config.cmake data/sample.ts data/sample-atsc.ts README.md LICENSE)
  if(NOT EXISTS "${root}/${file}")
    message(FATAL_ERROR "${file} is not in the package")
  endif()
endforeach()
file(GLOB_RECURSE internal "${root}/include/*/internal/*" "${root}/include/*/windows/*")
if(internal)
  message(FATAL_ERROR "in the package, and not for users: ${internal}")
endif()

# What the system finds beside a program or on its path.
set(wine ${CMAKE_COMMAND} -E env WINEDEBUG=-all "WINEPATH=${root}/bin" ${WINE})
function(expect_output pattern)
  run(${wine} ${ARGN})
  if(NOT output MATCHES "${pattern}")
    message(FATAL_ERROR "${ARGN} prints: ${output}")
  endif()
endfunction()
expect_output("^quillon ${VERSION}\n" "${root}/bin/quillon.exe" --version)
expect_output("^table name: program_association_section\n" "${root}/bin/quillon.exe" report "${root}/data/sample.ts")

configure(${CMAKE_CURRENT_LIST_DIR}/package ${folder}/build -DCMAKE_TOOLCHAIN_FILE=${SOURCE}/cmake/mingw.cmake
          "-Dquillon_DIR=${root}/lib/cmake/quillon" -DVERSION=${VERSION})
run(${CMAKE_COMMAND} --build ${folder}/build)
expect_output("^program 4097:\n" ${folder}/build/programs.exe "${root}/data/sample.ts")
