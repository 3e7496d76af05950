# Turns a packed payload into an object library that defines the store of store/embedded_file_store.h
# and that exactly one target of each program links.

if(WIN32)
  set(QUIRLODUINO_FRAME_SOURCE "${PROJECT_SOURCE_DIR}/cmake/payload_frame_windows.S.in")
else()
  set(QUIRLODUINO_FRAME_SOURCE "${PROJECT_SOURCE_DIR}/cmake/payload_frame_posix.S.in")
endif()

# quirloduino_add_store(NAME DIRECTORY): the store packed in DIRECTORY, which other rules fill with
# payload.zst (the frame) and payload_tables.cpp. The frame enters by .incbin.
function(quirloduino_add_store name directory)
  set(PAYLOAD_FRAME "${directory}/payload.zst")
  set(frame_source "${CMAKE_CURRENT_BINARY_DIR}/${name}_frame.S")
  configure_file("${QUIRLODUINO_FRAME_SOURCE}" "${frame_source}" @ONLY)
  # The assembler's own dependencies don't know of .incbin.
  set_source_files_properties("${frame_source}" PROPERTIES OBJECT_DEPENDS "${PAYLOAD_FRAME}")
  add_library(${name} OBJECT "${frame_source}" "${directory}/payload_tables.cpp")
  target_link_libraries(${name} PUBLIC store)
  set_target_properties(${name} PROPERTIES CXX_CLANG_TIDY "")  # generated
endfunction()

# quirloduino_add_packed_store(NAME TREE dir [LEVEL n]): a payload tree packed by quirloduino-pack,
# anew whenever a file of the tree changes, comes or goes.
function(quirloduino_add_packed_store name)
  cmake_parse_arguments(arg "" "TREE;LEVEL" "" ${ARGN})
  if(NOT arg_LEVEL)
    set(arg_LEVEL 3)
  endif()
  set(directory "${CMAKE_CURRENT_BINARY_DIR}/${name}.packed")
  add_custom_command(
    OUTPUT "${directory}/payload.zst" "${directory}/payload.tbl" "${directory}/payload_tables.cpp"
    COMMAND quirloduino-pack pack "${arg_TREE}" --output "${directory}" --level ${arg_LEVEL}
            --depfile "${directory}/payload.d"
    DEPENDS quirloduino-pack
    DEPFILE "${directory}/payload.d"
    COMMENT "Packing ${arg_TREE}"
    USES_TERMINAL VERBATIM)
  quirloduino_add_store(${name} "${directory}")
endfunction()
