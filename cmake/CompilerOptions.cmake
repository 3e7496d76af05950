# How our own code is compiled: quirloduino_options carries it, and every target of ours links it.
add_library(quirloduino_options INTERFACE)
target_compile_features(quirloduino_options INTERFACE cxx_std_20)
target_include_directories(quirloduino_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(
  quirloduino_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wshadow -Wconversion -Werror>)

# What is handed out carries nothing of the machine or the folder that it was built on: the same
# sources and payload give the same bytes everywhere. tests/binaries/delivered_form compares them.
option(QUIRLODUINO_DELIVERED "Build what is handed out: without symbols and paths" OFF)
if(QUIRLODUINO_DELIVERED)
  target_compile_options(
    quirloduino_options INTERFACE "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=."
                                  "-ffile-prefix-map=${PROJECT_BINARY_DIR}=build")
  target_link_options(quirloduino_options INTERFACE -s LINKER:--build-id=none)
endif()

# The program writes over a folder that somebody downloaded, so a defect must end it and not become
# a way in: guarded stacks, checked calls of the C library, a place in memory that nobody knows
# beforehand, tables that are read-only from the start. tests/binaries reads it from the files.
# Windows' own linker options stand in windows_program.cmake.
if(QUIRLODUINO_SANITIZE)
  target_compile_options(
    quirloduino_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                  -fno-omit-frame-pointer)
  target_link_options(quirloduino_options INTERFACE -fsanitize=address,undefined)
else()
  target_compile_options(
    quirloduino_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-fstack-protector-strong>)
endif()
if(NOT WIN32)
  set(is_executable $<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>)
  set(is_library_file $<IN_LIST:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY$<SEMICOLON>MODULE_LIBRARY>)
  target_compile_options(quirloduino_options INTERFACE $<$<NOT:${is_library_file}>:-fPIE>)
  target_link_options(
    quirloduino_options INTERFACE $<${is_executable}:-pie>
                                  LINKER:-z,relro,-z,now,-z,noexecstack)
  if(NOT QUIRLODUINO_SANITIZE)
    # The checks come from the optimiser, and the headers refuse to do without; the sanitizers have
    # their own.
    target_compile_definitions(
      quirloduino_options INTERFACE $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:_FORTIFY_SOURCE=2>)
  endif()
endif()
set(CMAKE_CXX_EXTENSIONS OFF)
