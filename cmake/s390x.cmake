# A machine whose numbers have their highest byte first.
set(CMAKE_SYSTEM_PROCESSOR s390x)
include(${CMAKE_CURRENT_LIST_DIR}/foreign.cmake)
