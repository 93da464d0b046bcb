# The package for Windows: program, DLL, import library, headers and CMake package, with the compiler's own libraries,
# which a program that is linked with the DLL shares with it.

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME quillon-${PROJECT_VERSION}-windows-x86_64-mingw)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
install(FILES README.md CHANGELOG.md LICENSE DESTINATION .)
install(FILES data/sample.ts data/sample-atsc.ts DESTINATION data)
install(FILES ${quillon_runtime} TYPE BIN)
include(CPack)
