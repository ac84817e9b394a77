# The Debian package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core, fonts-wqy-microhei, qttranslations5-l10n")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"A camera with a lens never lights its sensor evenly. This plug-in for
industrial-camera viewers makes the image flat: from dark and bright frames it
makes coefficients, and corrects every frame with them.

Beside the plug-in there are a reference viewer with a simulated camera
(ffchost) and a command-line tool for recorded frames (ffc).")

install(CODE "file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin\")")
foreach(program IN LISTS programs)
  install(CODE "file(CREATE_LINK ../${folder}/${program}
    \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin/${program}\" SYMBOLIC)")
endforeach()

set(doc share/doc/flatfieldcorrection)
set(made "${CMAKE_BINARY_DIR}/package")
install(FILES README.md CHANGELOG.md "${made}/VERSION.txt" DESTINATION ${doc})

# The copyright file: the texts of what is compiled in. Shared libraries come with packages of their own, which have theirs.
function(ffc_make_copyright file)
  set(FFC_COMPILED_IN)
  foreach(line IN LISTS FFC_LIBRARIES)
    ffc_get_library("${line}" name package files headers archives)
    if(name IN_LIST ARGN)
      ffc_find_license(path ${package})
      if(path)
        file(READ "${path}" text)
        string(APPEND FFC_COMPILED_IN "\n---------- ${name} (${package}) ----------\n\n${text}")
      endif()
    endif()
  endforeach()
  configure_file("${PROJECT_SOURCE_DIR}/packaging/copyright.in" "${file}" @ONLY)
endfunction()

set(compiled_in)
if(programs)
  list(APPEND compiled_in CLI11)
endif()
if(XXHASH_INCLUDE_DIR)
  list(APPEND compiled_in xxHash)
endif()
ffc_make_copyright("${made}/copyright" ${compiled_in})
install(FILES "${made}/copyright" DESTINATION ${doc})

# ffc_install_compressed(FILE FOLDER NAME): as NAME.gz, without the time and the name that gzip would keep.
find_program(FFC_GZIP gzip REQUIRED)
function(ffc_install_compressed file folder name)
  get_filename_component(file "${file}" ABSOLUTE)
  add_custom_command(OUTPUT "${made}/${name}.gz"
    COMMAND "${FFC_GZIP}" -9nc "${file}" > "${made}/${name}.gz"
    DEPENDS "${file}"
    VERBATIM)
  set_property(GLOBAL APPEND PROPERTY FFC_PACKAGE_FILES "${made}/${name}.gz")
  install(FILES "${made}/${name}.gz" DESTINATION ${folder})
endfunction()

# Debian's own form of the changes, with the time of SOURCE_DATE_EPOCH where that is set.
string(TIMESTAMP FFC_CHANGELOG_TIME "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file("${PROJECT_SOURCE_DIR}/packaging/changelog.in" "${made}/changelog" @ONLY)
ffc_install_compressed("${made}/changelog" ${doc} changelog)

if(programs)
  foreach(page IN LISTS programs)
    ffc_install_compressed(packaging/${page}.1 share/man/man1 ${page}.1)
  endforeach()
  install(FILES tools/ffc/examples/Snakefile tools/ffc/examples/ffc-array.sbatch DESTINATION ${doc}/examples)
  install(FILES packaging/ffc.bash DESTINATION share/bash-completion/completions RENAME ffc)
  install(FILES packaging/ffchost.bash DESTINATION share/bash-completion/completions RENAME ffchost)

  # The menu entry, its icon, and what a software centre shows.
  install(FILES packaging/ffchost.desktop DESTINATION share/applications)
  install(FILES packaging/ffchost.svg DESTINATION share/icons/hicolor/scalable/apps)
  install(FILES packaging/ffchost.metainfo.xml DESTINATION share/metainfo)
  foreach(size IN ITEMS 48 128)
    add_custom_command(OUTPUT "${made}/${size}/ffchost.png"
      COMMAND "${CMAKE_COMMAND}" -E make_directory "${made}/${size}"
      COMMAND "${FFC_RSVG_CONVERT}" --width ${size} --height ${size} --output "${made}/${size}/ffchost.png"
              "${PROJECT_SOURCE_DIR}/packaging/ffchost.svg"
      DEPENDS "${PROJECT_SOURCE_DIR}/packaging/ffchost.svg"
      VERBATIM)
    set_property(GLOBAL APPEND PROPERTY FFC_PACKAGE_FILES "${made}/${size}/ffchost.png")
    install(FILES "${made}/${size}/ffchost.png" DESTINATION share/icons/hicolor/${size}x${size}/apps)
  endforeach()
endif()
get_property(files GLOBAL PROPERTY FFC_PACKAGE_FILES)
add_custom_target(ffc_packagefiles ALL DEPENDS ${files})
