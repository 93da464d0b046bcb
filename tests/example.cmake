# Runs an example on the stream that it is for, and compares what it prints with examples/expected; where that ends in a
# line of dots, the rest is not shown. On another stream it may say that something is missing, and may not crash; what
# is no stream it refuses as such.
cmake_minimum_required(VERSION 3.25)

set(stream data/sample.ts)
set(other data/sample-atsc.ts)
if(NAME MATCHES "^atsc_")
  set(stream data/sample-atsc.ts)
  set(other data/sample.ts)
endif()

function(run file)
  execute_process(COMMAND ${EMULATOR} ${PROGRAM} ${SOURCE}/${file}
                  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE said)
  string(REPLACE "\r\n" "\n" output "${output}")
  foreach(name result output said)
    set(${name} "${${name}}" PARENT_SCOPE)
  endforeach()
endfunction()

run(${stream})
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${stream}: ${result}\n${said}")
endif()
file(READ ${SOURCE}/examples/expected/${NAME}.txt expected)
if(expected MATCHES "\n\\.\\.\\.\n$")
  string(REGEX REPLACE "\\.\\.\\.\n$" "" expected "${expected}")
  string(LENGTH "${expected}" length)
  string(SUBSTRING "${output}" 0 ${length} output)
endif()
if(expected STREQUAL "" OR NOT output STREQUAL expected)
  message(FATAL_ERROR "${stream}: expected\n${expected}\nprinted\n${output}")
endif()

run(${other})
if(NOT result MATCHES "^[01]$")
  message(FATAL_ERROR "${other}: ${result}\n${said}")
endif()

if(NAME STREQUAL "first")  # the shortest of them says nothing of failures
  return()
endif()
run(examples/${NAME}.cpp)
if(NOT result EQUAL 1 OR NOT output STREQUAL "" OR NOT said MATCHES "no transport stream")
  message(FATAL_ERROR "no stream: ${result}\n${said}")
endif()
