# What is installed and packed: "cpack -G DEB" on Linux, "cpack -G ZIP" on Windows.
set(CPACK_PACKAGE_NAME "${PROJECT_NAME}")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_VENDOR "${PROJECT_NAME}")
set(CPACK_PACKAGE_CONTACT "Flat Field Correction developers <developers@flatfieldcorrection.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

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

# The toolkit's libraries, its plug-ins, and what the compiler's own programs need at run time.
function(ffc_install_windows_libraries)
  foreach(module IN ITEMS Core Gui Widgets)
    list(APPEND libraries "$<TARGET_FILE:Qt5::${module}>")
  endforeach()
  if(MINGW)
    get_target_property(core Qt5::Core IMPORTED_LOCATION_RELEASE)
    get_filename_component(bin "${core}" DIRECTORY)
    foreach(library IN ITEMS libgcc_s_seh-1 libstdc++-6 libwinpthread-1)
      list(APPEND libraries "${bin}/${library}.dll")
    endforeach()
  endif()
  install(PROGRAMS ${libraries} DESTINATION .)
  install(PROGRAMS $<TARGET_FILE:Qt5::QWindowsIntegrationPlugin> $<TARGET_FILE:Qt5::QOffscreenIntegrationPlugin>
    DESTINATION platforms)
  install(PROGRAMS $<TARGET_FILE:Qt5::QWindowsVistaStylePlugin> DESTINATION styles)
endfunction()

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_SYSTEM_NAME win64)
  configure_file("${PROJECT_SOURCE_DIR}/packaging/windows-readme.txt.in" "${CMAKE_BINARY_DIR}/windows-readme.txt"
    @ONLY NEWLINE_STYLE CRLF)
  install(FILES "${CMAKE_BINARY_DIR}/windows-readme.txt" DESTINATION . RENAME README.txt)
  if(programs)
    ffc_install_windows_libraries()
  endif()
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION science)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core, fonts-wqy-microhei")
  install(CODE "file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin\")")
  foreach(program IN LISTS programs)
    install(CODE "file(CREATE_LINK ../${folder}/${program}
      \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin/${program}\" SYMBOLIC)")
  endforeach()
  install(FILES README.md CHANGELOG.md DESTINATION share/doc/flatfieldcorrection)
  if(TARGET ffc)
    install(FILES packaging/ffc.1 packaging/ffchost.1 DESTINATION share/man/man1)
    install(FILES tools/ffc/examples/Snakefile tools/ffc/examples/ffc-array.sbatch
      DESTINATION share/doc/flatfieldcorrection/examples)
    install(FILES packaging/ffc.bash DESTINATION share/bash-completion/completions RENAME ffc)
  endif()
endif()

include(CPack)
