# Qwt::Qwt, which draws plots.
if(NOT TARGET Qwt::Qwt)
  find_path(QWT_INCLUDE_DIR qwt_plot.h PATH_SUFFIXES qwt qwt-qt5 qwt6 REQUIRED)
  find_library(QWT_LIBRARY NAMES qwt-qt5 qwt REQUIRED)
  add_library(Qwt::Qwt UNKNOWN IMPORTED GLOBAL)
  set_target_properties(Qwt::Qwt PROPERTIES
    IMPORTED_LOCATION "${QWT_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${QWT_INCLUDE_DIR}"
    INTERFACE_LINK_LIBRARIES Qt5::Widgets)
endif()
