# Installation: library, program, public headers, CMake package and pkg-config file. All of it may be moved together.
# Its components are what a distribution packages apart: library, development, program, and python with the module.

include(CMakePackageConfigHelpers)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/quillon)

install(TARGETS quillon EXPORT quillon-targets
  RUNTIME COMPONENT library
  LIBRARY COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(DIRECTORY quillon DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  FILES_MATCHING PATTERN "*.h" PATTERN "*.inc" PATTERN "internal" EXCLUDE
                 PATTERN "posix" EXCLUDE PATTERN "windows" EXCLUDE PATTERN "tree" EXCLUDE
                 PATTERN "msxml" EXCLUDE)
if(TARGET quillon_program)
  file(RELATIVE_PATH libraries_from_programs ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(quillon_program PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_programs}")
  install(TARGETS quillon_program COMPONENT program)
  if(TARGET manual)
    get_target_property(manual_folder manual BINARY_DIR)
    set(manual_folder ${manual_folder}/manual)
    set(zsh_folder site-functions)
    if(QUILLON_DEBIAN)
      set(zsh_folder vendor-completions)
    endif()
    install(FILES ${manual_folder}/quillon.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
    install(FILES ${manual_folder}/quillon DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            COMPONENT program)
    install(FILES ${manual_folder}/_quillon DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${zsh_folder} COMPONENT program)
    install(FILES ${manual_folder}/quillon.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
            COMPONENT program)
  endif()
endif()

configure_package_config_file(cmake/quillon-config.cmake.in quillon-config.cmake INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(quillon-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quillon-config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/quillon-config-version.cmake
        DESTINATION ${package_folder} COMPONENT development)
if("isal" IN_LIST QUILLON_PACKAGES)
  install(FILES cmake/Findisal.cmake DESTINATION ${package_folder} COMPONENT development)
endif()
install(EXPORT quillon-targets NAMESPACE quillon:: DESTINATION ${package_folder} COMPONENT development)

# The folders of the pkg-config file, from its own; those that are absolute stay what they are.
# pkg-config itself quotes the spaces in its folder's name.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig"
           OUTPUT_VARIABLE QUILLON_PC_UP)
foreach(kind LIB INCLUDE)
  set(QUILLON_PC_${kind} "\${prefix}")
  cmake_path(APPEND QUILLON_PC_${kind} "${CMAKE_INSTALL_${kind}DIR}")
  string(REPLACE " " "\\ " QUILLON_PC_${kind} "${QUILLON_PC_${kind}}")
endforeach()
list(TRANSFORM QUILLON_PACKAGES TOLOWER OUTPUT_VARIABLE QUILLON_PC_REQUIRES)
list(TRANSFORM QUILLON_PC_REQUIRES REPLACE "^isal$" "libisal")
list(JOIN QUILLON_PC_REQUIRES " " QUILLON_PC_REQUIRES)
configure_file(cmake/quillon.pc.in quillon.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quillon.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)
