# What others made and goes into a package, or is compiled or linked into something there. A line each, its fields
# separated by a space, "-" where there is none:
#
#   name, Debian package whose copyright file is the licence text, and what is of it, each a regular expression: files of a
#   Windows package, headers, archives
set(FFC_LIBRARIES
  "Qt libqt5core5a ^(Qt5[A-Za-z]+|q[a-z]+)[.]dll$ /qt5-mingw/include/ /lib(Qt5[A-Za-z]+|qtmain)([.]dll)?[.]a$"
  "Qwt libqwt-qt5-dev - /include/qwt/ /libqwt[.]a$"
  "CLI11 libcli11-dev - /include/CLI/ -"
  "xxHash libxxhash-dev - /xxh(ash|3|_x86dispatch)[.]h$ -"
  "GCC gcc-mingw-w64-base ^lib(gcc_s_seh-1|stdc[+][+]-6)[.]dll$ /gcc/x86_64-w64-mingw32/ -"
  "MinGW-w64 mingw-w64-x86-64-dev ^libwinpthread-1[.]dll$ /mingw-w64/include/ -")

# ffc_get_library(LINE NAME PACKAGE FILES HEADERS ARCHIVES): what is missing becomes an expression that nothing matches.
function(ffc_get_library line name package files headers archives)
  string(REPLACE " " ";" fields "${line}")
  list(TRANSFORM fields REPLACE "^-$" "^$")
  foreach(variable IN ITEMS name package files headers archives)
    list(POP_FRONT fields field)
    set(${${variable}} "${field}" PARENT_SCOPE)
  endforeach()
endfunction()
