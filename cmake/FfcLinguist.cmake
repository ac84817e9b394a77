# Qt5::lrelease, which compiles translations.
find_package(Qt5LinguistTools 5.15 QUIET)
if(NOT TARGET Qt5::lrelease)
  # A Qt for another system has none; its translations are compiled by this machine's.
  find_program(FFC_LRELEASE lrelease HINTS /usr/lib/qt5/bin REQUIRED)
  add_executable(Qt5::lrelease IMPORTED GLOBAL)
  set_target_properties(Qt5::lrelease PROPERTIES IMPORTED_LOCATION "${FFC_LRELEASE}")
endif()
