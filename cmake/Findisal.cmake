# ISA-L, which has no CMake package of its own: the target isal::isal.
find_path(ISAL_INCLUDE_DIR isa-l/crc.h)
find_library(ISAL_LIBRARY isal)
mark_as_advanced(ISAL_INCLUDE_DIR ISAL_LIBRARY)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(isal REQUIRED_VARS ISAL_LIBRARY ISAL_INCLUDE_DIR)
if(isal_FOUND AND NOT TARGET isal::isal)
  add_library(isal::isal UNKNOWN IMPORTED)
  set_target_properties(isal::isal PROPERTIES
    IMPORTED_LOCATION "${ISAL_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${ISAL_INCLUDE_DIR}")
endif()
