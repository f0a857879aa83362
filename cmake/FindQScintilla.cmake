# QScintilla for Qt 6 (Debian: libqscintilla2-qt6-dev): the text component of the
# form-text editor. Defines the imported target QScintilla::QScintilla.
find_path(QScintilla_INCLUDE_DIR
  NAMES Qsci/qsciscintillabase.h
  HINTS ${Qt6_DIR}/../../../include
  PATHS /usr/include/x86_64-linux-gnu/qt6 /usr/include/qt6 /usr/local/include/qt6
  PATH_SUFFIXES qt6)
find_library(QScintilla_LIBRARY NAMES qscintilla2_qt6)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(QScintilla REQUIRED_VARS QScintilla_LIBRARY QScintilla_INCLUDE_DIR)

if(QScintilla_FOUND AND NOT TARGET QScintilla::QScintilla)
  add_library(QScintilla::QScintilla UNKNOWN IMPORTED)
  set_target_properties(QScintilla::QScintilla PROPERTIES
    IMPORTED_LOCATION "${QScintilla_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${QScintilla_INCLUDE_DIR}"
    INTERFACE_LINK_LIBRARIES "Qt6::Widgets")
endif()
mark_as_advanced(QScintilla_INCLUDE_DIR QScintilla_LIBRARY)
