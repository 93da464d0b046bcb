# ARM, 64 bits: most receivers.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/foreign.cmake)
