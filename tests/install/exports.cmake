# What the shared library exports: its own names only, and no more of them than are accounted for.
cmake_minimum_required(VERSION 3.25)

if(OBJDUMP)
  # A DLL has a table of the names that it exports.
  execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} COMMAND sed -n "s/^.*] _Z/0 T _Z/p"
                  COMMAND ${CXXFILT} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
else()
  execute_process(COMMAND ${NM} -DC --defined-only ${LIBRARY} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
endif()
string(REGEX MATCHALL "[^\n]+" symbols "${symbols}")

function(none_of what pattern)
  set(found "${symbols}")
  list(FILTER found INCLUDE REGEX "${pattern}")
  if(found)
    list(JOIN found "\n" found)
    message(FATAL_ERROR "${what} exported:\n${found}")
  endif()
endfunction()
string(CONCAT own "^[0-9a-f]+ [A-Z] ((vtable|typeinfo|typeinfo name) for )?quillon::")
set(foreign "${symbols}")
list(FILTER foreign EXCLUDE REGEX "${own}")
if(foreign)
  list(JOIN foreign "\n" foreign)
  message(FATAL_ERROR "not the library's own, an instantiation or a static of an inline function:\n${foreign}")
endif()
none_of("a unique global is" "^[0-9a-f]+ u ")
none_of("an internal class or namespace is" "quillon::(faces|app)::|quillon::xml::[^D]|quillon::.*(TreeDocument|TreeNode|anonymous)")
none_of("more of quillon::detail is than public headers call" "quillon::detail::[^l]")

# The members of some 200 classes and records, a walk each, each constructor twice, and a vtable and two type
# informations a class. An instantiation for each descriptor class, which adds a hundred, is what the bound is to catch.
list(LENGTH symbols count)
message("${count} symbols")
if(count EQUAL 0 OR count GREATER 2330)
  message(FATAL_ERROR "${count} symbols are exported; 2330 are accounted for")
endif()
