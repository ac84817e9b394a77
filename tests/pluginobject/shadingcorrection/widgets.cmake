# Tests of the form, the small widgets and the message box.
ffc_add_test(widgets_test
  SOURCES
    "${CMAKE_CURRENT_LIST_DIR}/countpixels.h"
    "${CMAKE_CURRENT_LIST_DIR}/failingcreation.cpp"
    "${CMAKE_CURRENT_LIST_DIR}/failingcreation.h"
    "${CMAKE_CURRENT_LIST_DIR}/formtest.cpp"
    "${CMAKE_CURRENT_LIST_DIR}/formstyletest.cpp"
    "${CMAKE_CURRENT_LIST_DIR}/intslidertest.cpp"
    "${CMAKE_CURRENT_LIST_DIR}/mousemove.h"
    "${CMAKE_CURRENT_LIST_DIR}/toolstitlebartest.cpp"
    "${CMAKE_CURRENT_LIST_DIR}/tipsmessagebox/tipsmessageboxtest.cpp"
  LINK ffc_widgets ffc_resources
  QT FOCUS)
