# Builds 32-bit Windows executables with Debian's cross compiler and the static libraries that
# scripts/setup-windows has put into build/windows-deps/prefix. The compiler is the one with the threads
# of Windows: the other brings a runtime that imports calls to stop and redirect threads, of which
# nothing here makes use and which programs that hunt for malware dislike.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-win32)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-win32)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

get_filename_component(windows_deps "${CMAKE_CURRENT_LIST_DIR}/../build/windows-deps/prefix" ABSOLUTE)
# The prefix first: it alone has libraries without a DLL's import library beside them.
set(CMAKE_FIND_ROOT_PATH "${windows_deps}" /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# pkg-config must see nothing of this machine's own libraries, and name what static ones need.
unset(ENV{PKG_CONFIG_PATH})
set(ENV{PKG_CONFIG_LIBDIR} "${windows_deps}/lib/pkgconfig")
set(PKG_CONFIG_ARGN --static)
