# How our own code is compiled: quirloduino_options carries it, and every target of ours links it.
add_library(quirloduino_options INTERFACE)
target_compile_features(quirloduino_options INTERFACE cxx_std_20)
target_include_directories(quirloduino_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(
  quirloduino_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wshadow -Wconversion -Werror>)
if(QUIRLODUINO_SANITIZE)
  target_compile_options(
    quirloduino_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                  -fno-omit-frame-pointer)
  target_link_options(quirloduino_options INTERFACE -fsanitize=address,undefined)
endif()
set(CMAKE_CXX_EXTENSIONS OFF)
