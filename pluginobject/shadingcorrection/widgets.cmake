# The dialog's form, its small widgets and the message box. Every target that links ffc_widgets can
# include "ui_shadingcorrectiondlg.h".

qt5_wrap_ui(FFC_FORM_HEADER "${CMAKE_CURRENT_LIST_DIR}/shadingcorrectiondlg.ui")

ffc_add_library(ffc_widgets STATIC
  SOURCES
    "${CMAKE_CURRENT_LIST_DIR}/intslider.cpp"
    "${CMAKE_CURRENT_LIST_DIR}/intslider.h"
    "${CMAKE_CURRENT_LIST_DIR}/toolstitlebar.cpp"
    "${CMAKE_CURRENT_LIST_DIR}/toolstitlebar.h"
    "${CMAKE_CURRENT_LIST_DIR}/tipsmessagebox/tipsmessagebox.cpp"
    "${CMAKE_CURRENT_LIST_DIR}/tipsmessagebox/tipsmessagebox.h"
    "${FFC_FORM_HEADER}"
  LINK Qt5::Widgets)
set_target_properties(ffc_widgets PROPERTIES AUTOMOC ON)
target_include_directories(ffc_widgets SYSTEM PUBLIC "${CMAKE_CURRENT_BINARY_DIR}")
