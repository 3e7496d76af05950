# What the program and its tools are linked with; every library is an imported target here, so no
# other file names a path. Versions are those of Debian 12.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
pkg_check_modules(ZSTD REQUIRED IMPORTED_TARGET libzstd)
pkg_check_modules(LIBZIP REQUIRED IMPORTED_TARGET libzip)
pkg_check_modules(PNG REQUIRED IMPORTED_TARGET libpng)

# FLTK brings neither a pkg-config file nor a dependable package file. Debian's 1.3 and 1.4 put theirs
# in the same place, so this takes the one that scripts/setup has chosen.
find_path(FLTK_INCLUDE_DIR FL/Fl.H REQUIRED)
find_library(FLTK_LIBRARY fltk REQUIRED)
add_library(fltk INTERFACE)
target_include_directories(fltk SYSTEM INTERFACE "${FLTK_INCLUDE_DIR}")
target_link_libraries(fltk INTERFACE "${FLTK_LIBRARY}")
if(WIN32)
  # Not COMCTL32: see platform/imports_windows.cpp.
  target_compile_definitions(fltk INTERFACE WIN32)  # its headers ask for the word, not for _WIN32
  target_link_libraries(fltk INTERFACE ole32 uuid comdlg32 gdi32)
endif()

if(QUIRLODUINO_BUILD_TESTS AND NOT CMAKE_CROSSCOMPILING)
  find_package(GTest REQUIRED)
  find_package(X11 REQUIRED)  # for looking at a window
  include(GoogleTest)
endif()
