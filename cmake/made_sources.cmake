# Sources of the library that a program of the project makes from a folder of data. When compiling for another system
# that program is built by a compiler of this one.

# quillon_make_source(SOURCE PROGRAM FOLDER FILE...): the files are those of the program, headers included.
function(quillon_make_source made program folder)
  list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/)
  set(sources ${ARGN})
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  file(GLOB data CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.tsv)

  if(CMAKE_CROSSCOMPILING)
    find_program(QUILLON_HOST_CXX NAMES c++ g++ clang++ REQUIRED NO_CMAKE_FIND_ROOT_PATH
                 DOC "C++20 compiler for programs that the build runs")
    set(generator ${PROJECT_BINARY_DIR}/${program})
    add_custom_command(OUTPUT ${generator}
      COMMAND ${QUILLON_HOST_CXX} -std=c++20 -DQUILLON_STATIC -I${PROJECT_SOURCE_DIR} ${sources} -o ${generator}
      DEPENDS ${ARGN}
      COMMENT "Building the generator of ${made}" VERBATIM)
  else()
    add_executable(${program} ${sources})
    target_include_directories(${program} PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_definitions(${program} PRIVATE QUILLON_STATIC)
    target_link_libraries(${program} PRIVATE quillon_options)
    set(generator ${program})
  endif()

  add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/${made}
    COMMAND ${generator} ${PROJECT_SOURCE_DIR}/${folder} ${PROJECT_BINARY_DIR}/${made}
    DEPENDS ${generator} ${data}
    COMMENT "Making ${made}" VERBATIM)
  target_sources(quillon PRIVATE ${PROJECT_BINARY_DIR}/${made})
endfunction()

# The rows of the identifier registries.
quillon_make_source(registry_rows.cpp make_registries data/registries
  cmake/make_registries.cpp
  cmake/make_source.h
  quillon/report/internal/registry_file.cpp
  quillon/report/internal/registry_file.h
  quillon/report/internal/registry_rows.h
  quillon/sections/error.cpp
  quillon/platform/posix/code_page.cpp)

# The decoding trees of ATSC text.
quillon_make_source(huffman_tables.cpp make_huffman data/atsc_text
  cmake/make_huffman.cpp
  cmake/make_source.h
  quillon/fields/internal/huffman_tables.h)
