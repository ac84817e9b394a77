# cmake -DNM=nm -DFILES=object,... -P kernelsymbols.cmake
#
# Fails unless each object file, a kernel source compiled for one level, shows the linker its table and nothing else:
# what the linker may merge with another level's could run on a processor that has not got that level.
string(REPLACE "," ";" files "${FILES}")
foreach(file IN LISTS files)
  execute_process(COMMAND "${NM}" --defined-only --extern-only "${file}" OUTPUT_VARIABLE symbols
    COMMAND_ERROR_IS_FATAL ANY)
  # A sanitizer's mark of the table.
  string(REGEX REPLACE "[^\n]*__odr_asan[^\n]*\n" "" symbols "${symbols}")
  if(NOT symbols MATCHES "^[0-9a-f]+ [DRB] _?(_ZN[0-9a-z]+)?g_stS[A-Za-z]+Kernels_(baseline|v[234])E?\n$")
    message(FATAL_ERROR "${file} shows\n${symbols}")
  endif()
endforeach()
