# What the tests of both packages share.

# run(COMMAND ...) fails with everything that the command said; else its standard output is in run_output.
function(run)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${WORK}" RESULT_VARIABLE result
    OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\n${output}\n${errors}")
  endif()
  set(run_output "${output}" PARENT_SCOPE)
endfunction()

# make_package(GENERATOR FILE_OUT [CPACK OPTION ...]) packs the build into the empty folder WORK.
function(make_package generator file_out)
  file(REMOVE_RECURSE "${WORK}")
  file(MAKE_DIRECTORY "${WORK}/made")
  run("${CMAKE_CPACK_COMMAND}" -G ${generator} --config "${BUILD}/CPackConfig.cmake" -B "${WORK}/made" ${ARGN})
  file(GLOB files "${WORK}/made/*.*")
  list(FILTER files EXCLUDE REGEX "\\.sha256$")
  list(LENGTH files count)
  if(NOT count EQUAL 1)
    message(FATAL_ERROR "made ${files}")
  endif()
  message(STATUS "made ${files}")
  set(${file_out} "${files}" PARENT_SCOPE)
endfunction()

# expect_host_works(COMMAND ...): the unpacked host knows its version, and makes a camera's image flat.
function(expect_host_works)
  run(${ARGN} --version)
  if(NOT run_output MATCHES "^ffchost ${VERSION}\r?\n$")
    message(FATAL_ERROR "--version says ${run_output}")
  endif()
  run(${ARGN} --headless --size 128x64 --frames 1 --out result)
  file(READ "${WORK}/result/report.json" report)
  string(JSON width GET "${report}" width)
  if(NOT width EQUAL 128)
    message(FATAL_ERROR "${report}")
  endif()
endfunction()
