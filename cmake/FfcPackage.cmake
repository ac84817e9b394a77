# What is installed and packed: "cpack -G DEB" on Linux, "cpack -G ZIP" and "-G NSIS" for Windows.
include(FfcLicenses)
set(CPACK_PACKAGE_NAME "${PROJECT_NAME}")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_VENDOR "${PROJECT_NAME}")
set(CPACK_PACKAGE_CONTACT "Flat Field Correction developers <developers@flatfieldcorrection.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_CHECKSUM SHA256)

set(programs)
foreach(program IN ITEMS ffchost ffc)
  if(TARGET ${program})
    list(APPEND programs ${program})
  endif()
endforeach()

# Everything in one folder, because a program finds the module beside itself and the module the image library.
if(WIN32)
  set(folder .)
else()
  set(folder lib/flatfieldcorrection)
endif()
install(TARGETS ${programs} FlatFieldCorrection Ombrix
  RUNTIME DESTINATION ${folder}
  LIBRARY DESTINATION ${folder} NAMELINK_SKIP
  ARCHIVE DESTINATION ${folder} EXCLUDE_FROM_ALL)

# What a viewer must have been built with to load this module.
if(FFC_GENAPI STREQUAL "sdk")
  get_target_property(library GenApiSdk::GenApi FFC_LIBRARY_FILE)
  get_filename_component(FFC_GENAPI_NAME "${library}" NAME)
  string(PREPEND FFC_GENAPI_NAME "GenICam SDK, ")
else()
  set(FFC_GENAPI_NAME "the interfaces of this project (genapi/), not the GenICam SDK")
endif()
configure_file("${PROJECT_SOURCE_DIR}/packaging/version.txt.in" "${CMAKE_BINARY_DIR}/package/VERSION.txt" @ONLY)

if(WIN32)
  include(FfcWindowsPackage)
else()
  include(FfcDebianPackage)
endif()

# Last of all: a package without the texts of the licences is none, and packages of one source have one time.
get_property(FFC_MISSING_LICENSES GLOBAL PROPERTY FFC_MISSING_LICENSES)
configure_file("${PROJECT_SOURCE_DIR}/packaging/beforepacking.cmake.in" "${CMAKE_BINARY_DIR}/package/beforepacking.cmake" @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_BINARY_DIR}/package/beforepacking.cmake")

include(CPack)
