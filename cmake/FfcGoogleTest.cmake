# GoogleTest: GTest::gtest, GTest::gtest_main, GTest::gmock.
#
# Found as a package; for another system it is built here, from the sources that Debian's libgtest-dev brings.
if(CMAKE_CROSSCOMPILING)
  set(FFC_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "Sources of GoogleTest")
  set(INSTALL_GTEST OFF)
  set(BUILD_SHARED_LIBS OFF)
  add_subdirectory("${FFC_GOOGLETEST_SOURCE}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
else()
  find_package(GTest REQUIRED)
endif()
