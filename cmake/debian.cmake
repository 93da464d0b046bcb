# Packages for Debian, by cpack: one of each component of the installation.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each has its own
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL library development program python)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE quillon)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${QUILLON_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Where the programs' dependencies are looked for; that on the library itself is stated below.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})

set(debian_sources ${PROJECT_SOURCE_DIR}/packaging/debian)
set(debian_folder ${PROJECT_BINARY_DIR}/packaging)
set(CPACK_POST_BUILD_SCRIPTS ${debian_sources}/without_scripts.cmake)

set(library_package libquillon${QUILLON_ABI})
set(library_since "${library_package} (>= ${PROJECT_VERSION})")
set(library_about "quillon is a C++20 class library for receivers, monitors, EPG importers and
stream analysers. It takes MPEG-2 transport streams apart and turns their
PSI/SI sections into typed objects: the tables and descriptors of
ISO/IEC 13818-1, DVB service information, ATSC PSIP, MHP application
signalling and the DVB IP/MAC notification table.
")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "PSI/SI sections of MPEG-2 transport streams as typed objects
${library_about}
This package contains the shared library.")
file(CONFIGURE OUTPUT ${debian_folder}/shlibs CONTENT "libquillon ${QUILLON_ABI} ${library_since}\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${debian_folder}/shlibs ${debian_sources}/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libquillon-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${library_package} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "PSI/SI sections of MPEG-2 transport streams - development files
${library_about}
This package contains the headers and what CMake and pkg-config need.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME quillon)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${library_since}")
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "tell what an MPEG-2 transport stream says of itself
quillon reads DVB and ATSC streams from files, pipes, devices and the network,
and prints their services, programme guide, tables and sections: for people,
as JSON or XML, as a page for a browser, and as they change. A manual and
completions for bash, zsh and fish come with it.")

# A module in C++ runs with the version of Python that it is built with, and no other.
find_package(Python REQUIRED COMPONENTS Interpreter)
math(EXPR next "${Python_VERSION_MINOR} + 1")
set(since_python ${Python_VERSION_MAJOR}.${Python_VERSION_MINOR})
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-quillon)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
  "${library_since}, python3 (>= ${since_python}~), python3 (<< ${Python_VERSION_MAJOR}.${next})")
set(CPACK_DEBIAN_PYTHON_DESCRIPTION "PSI/SI sections of MPEG-2 transport streams as Python objects
quillon reads DVB and ATSC streams from files, pipes, bytes and live chunks:
all fields of their sections as dicts, services, schedules and statistics.
Bytes are cut and parsed without the interpreter's lock.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA ${debian_sources}/postinst ${debian_sources}/prerm)

# The files that each package has of itself. What is packed at another time is packed the same if SOURCE_DATE_EPOCH is.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${debian_sources}/changelog.in ${debian_folder}/changelog.Debian @ONLY)
file(READ LICENSE license)
string(REGEX MATCH "Copyright [^\n]*" copyright "${license}")
string(REGEX REPLACE "^.*\nCopyright [^\n]*\n+" "" license "${license}")
string(REPLACE "Copyright (c)" "Copyright:" copyright "${copyright}")
string(REGEX REPLACE "\n+$" "" license "${license}")
string(REPLACE "\n\n" "\n.\n" license "${license}")
string(REPLACE "\n" "\n " license " ${license}")
configure_file(${debian_sources}/copyright.in ${debian_folder}/copyright @ONLY)
configure_file(CHANGELOG.md ${debian_folder}/changelog COPYONLY)
foreach(file changelog changelog.Debian)
  execute_process(COMMAND gzip -9nf ${debian_folder}/${file} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  install(FILES ${debian_folder}/changelog.gz ${debian_folder}/changelog.Debian.gz ${debian_folder}/copyright
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME} COMPONENT ${component})
endforeach()
set(manual "\$ENV{DESTDIR}${CMAKE_INSTALL_FULL_MANDIR}/man1/quillon.1")
install(CODE "execute_process(COMMAND gzip -9nf \"${manual}\" COMMAND_ERROR_IS_FATAL ANY)" COMPONENT program)

include(CPack)
