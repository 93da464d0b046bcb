# The rows of the identifier registries, made from data/registries by a program of the project. When compiling
# for another system that program is built by a compiler of this one.

set(registry_generator_sources
  ${PROJECT_SOURCE_DIR}/cmake/make_registries.cpp
  ${PROJECT_SOURCE_DIR}/quillon/report/internal/registry_file.cpp
  ${PROJECT_SOURCE_DIR}/quillon/sections/error.cpp
  ${PROJECT_SOURCE_DIR}/quillon/platform/posix/code_page.cpp)
file(GLOB registry_lists CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/data/registries/*.tsv)
set(registry_rows ${PROJECT_BINARY_DIR}/registry_rows.cpp)

if(CMAKE_CROSSCOMPILING)
  find_program(QUILLON_HOST_CXX NAMES c++ g++ clang++ REQUIRED NO_CMAKE_FIND_ROOT_PATH
               DOC "C++20 compiler for programs that the build runs")
  set(registry_generator ${PROJECT_BINARY_DIR}/make_registries)
  add_custom_command(OUTPUT ${registry_generator}
    COMMAND ${QUILLON_HOST_CXX} -std=c++20 -DQUILLON_STATIC -I${PROJECT_SOURCE_DIR}
            ${registry_generator_sources} -o ${registry_generator}
    DEPENDS ${registry_generator_sources}
            ${PROJECT_SOURCE_DIR}/quillon/report/internal/registry_file.h
            ${PROJECT_SOURCE_DIR}/quillon/report/internal/registry_rows.h
    COMMENT "Building the generator of the registry rows" VERBATIM)
else()
  add_executable(make_registries ${registry_generator_sources})
  target_include_directories(make_registries PRIVATE ${PROJECT_SOURCE_DIR})
  target_compile_definitions(make_registries PRIVATE QUILLON_STATIC)
  target_link_libraries(make_registries PRIVATE quillon_options)
  set(registry_generator make_registries)
endif()

add_custom_command(OUTPUT ${registry_rows}
  COMMAND ${registry_generator} ${PROJECT_SOURCE_DIR}/data/registries ${registry_rows}
  DEPENDS ${registry_generator} ${registry_lists}
  COMMENT "Making the registry rows" VERBATIM)
target_sources(quillon PRIVATE ${registry_rows})
