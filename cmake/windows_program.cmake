# What makes an executable of ours a finished Windows program.
enable_language(RC)
find_program(PERL perl REQUIRED)

target_link_options(quirloduino_options INTERFACE -static -fstack-protector-strong)

# Version resource and manifest are filled from the header that the program itself reads.
file(STRINGS "${PROJECT_SOURCE_DIR}/store/package_version.h" version_line REGEX "kPackageVersion")
string(REGEX REPLACE ".*\"(.*)\".*" "\\1" QUIRLODUINO_VERSION "${version_line}")
# "1.60-beta5" as four numbers: 1, 60, 0, 5.
string(REGEX MATCHALL "[0-9]+" numbers "${QUIRLODUINO_VERSION}")
list(GET numbers 0 1 2 numbers)
list(INSERT numbers 2 0)
list(JOIN numbers "," QUIRLODUINO_VERSION_NUMBERS)
list(JOIN numbers "." QUIRLODUINO_MANIFEST_VERSION)
set_property(DIRECTORY "${PROJECT_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
                                                      store/package_version.h)
set(QUIRLODUINO_RESOURCES "${PROJECT_SOURCE_DIR}/wizard/windows")
foreach(resource quirloduino.rc quirloduino.manifest)
  configure_file("${QUIRLODUINO_RESOURCES}/${resource}.in" "${PROJECT_BINARY_DIR}/${resource}" @ONLY)
endforeach()

# quirloduino_windows_program(TARGET): a program without a console that needs no library beside what
# every Windows has, with icon, version and manifest. It may use all four gigabytes of address space
# where the system has them, since the payload wants one block of hundreds of megabytes.
function(quirloduino_windows_program target)
  target_sources(${target} PRIVATE "${PROJECT_BINARY_DIR}/quirloduino.rc"
                                   "${PROJECT_SOURCE_DIR}/platform/imports_windows.cpp"
                                   "${PROJECT_SOURCE_DIR}/platform/started_programs_windows.cpp")
  target_link_libraries(${target} PRIVATE platform)
  set_source_files_properties(
    "${PROJECT_BINARY_DIR}/quirloduino.rc"
    TARGET_DIRECTORY ${target}
    PROPERTIES OBJECT_DEPENDS
               "${QUIRLODUINO_RESOURCES}/quirloduino.ico;${PROJECT_BINARY_DIR}/quirloduino.manifest")
  target_link_options(
    ${target}
    PRIVATE
    -mwindows
    LINKER:--dynamicbase,--nxcompat,--large-address-aware
    LINKER:--no-insert-timestamp)
  # A checksum of 0 is taken for a sign of malice; the linker can't fill it in.
  add_custom_command(
    TARGET ${target} POST_BUILD
    COMMAND "${PERL}" "${PROJECT_SOURCE_DIR}/cmake/set_pe_checksum.pl" "$<TARGET_FILE:${target}>"
    VERBATIM)
endfunction()
