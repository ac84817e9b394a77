# cmake -DNM=nm -DLIST=file -P classnames.cmake
#
# LIST has a static library a line. Fails when two of them define a class of one name: a program that links both keeps
# one of each function, and whoever was compiled with the other class calls it on an object of another layout.
#
# A class is where its own symbols are: functions, tables, data. What every user of a header has does not count: inline
# functions, templates and the tables of classes without a key function are weak, and the linker keeps one of each. (So
# a class that has nothing else is not seen here.)
# A function or a variable outside of a class may be defined but once, too.
cmake_minimum_required(VERSION 3.21)

# Namespaces that begin like a class; others are in small letters.
set(namespaces "GenApi|GenICam|Ui")

# The class that a demangled symbol belongs to, or the whole symbol when it has none.
function(get_owner symbol owner_out)
  set(name "${symbol}")
  string(REGEX REPLACE "^((non-)?virtual thunk to|guard variable for) " "" name "${name}")
  if(name MATCHES "^(vtable|VTT|typeinfo|typeinfo name) for (.*)$")
    set(${owner_out} "${CMAKE_MATCH_2}" PARENT_SCOPE)
    return()
  endif()
  # Without parameters, template arguments, tags and the result that a template names.
  string(REGEX REPLACE "operator(\\(\\)|[^(]+)\\(.*$" "operator" name "${name}")
  string(REGEX REPLACE "\\(.*$" "" name "${name}")
  while(name MATCHES "<[^<>]*>")
    string(REGEX REPLACE "<[^<>]*>" "" name "${name}")
  endwhile()
  string(REGEX REPLACE "{[^}]*}" "" name "${name}")
  string(REGEX REPLACE "^.* " "" name "${name}")
  set(${owner_out} "${symbol}" PARENT_SCOPE)
  if(name MATCHES "^(.+)::[^:]+$")
    set(scope "${CMAKE_MATCH_1}")
    if(NOT scope MATCHES "(^|::)([a-z][a-z0-9_]*|${namespaces})$")
      set(${owner_out} "${scope}" PARENT_SCOPE)
    endif()
  endif()
endfunction()

# The owners of the symbols that a library alone defines.
function(read_owners library owners_out)
  execute_process(COMMAND "${NM}" --demangle --defined-only --extern-only "${library}" OUTPUT_VARIABLE listing
    ERROR_QUIET RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${library} cannot be read")
  endif()
  # Brackets and semicolons would mean something to lists.
  string(REPLACE ";" "," listing "${listing}")
  string(REPLACE "[" "{" listing "${listing}")
  string(REPLACE "]" "}" listing "${listing}")
  string(REGEX MATCHALL "[0-9a-f]+ [TDBRSGC] [^\n]+" lines "${listing}")
  set(owners)
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^[0-9a-f]+ . " "" symbol "${line}")
    # Not a sanitizer's marks.
    if(NOT symbol MATCHES "^__odr_asan")
      get_owner("${symbol}" owner)
      list(APPEND owners "${owner}")
    endif()
  endforeach()
  list(REMOVE_DUPLICATES owners)
  set(${owners_out} "${owners}" PARENT_SCOPE)
endfunction()

file(STRINGS "${LIST}" libraries)
set(clashes "")
set(count 0)
foreach(library IN LISTS libraries)
  read_owners("${library}" owners)
  get_filename_component(file "${library}" NAME)
  foreach(owner IN LISTS owners)
    string(SHA1 key "${owner}")
    if(DEFINED home_${key})
      string(APPEND clashes "\n  ${owner}: ${home_${key}}, ${file}")
    else()
      set(home_${key} "${file}")
      math(EXPR count "${count} + 1")
    endif()
  endforeach()
endforeach()
if(clashes)
  message(FATAL_ERROR "Defined in two libraries:${clashes}")
endif()
if(count EQUAL 0)
  message(FATAL_ERROR "${LIST} names no library that defines anything")
endif()
message(STATUS "${count} classes and functions, each in one library")
