# Fuzz targets and the builds that serve them. One set of sources makes three programs: the search
# (QUIRLODUINO_FUZZ: libFuzzer, beside the sanitizers of QUIRLODUINO_SANITIZE), the replay of the
# corpus in the ordinary suite, and the replay that counts what it covers (QUIRLODUINO_COVERAGE).
option(QUIRLODUINO_FUZZ "Build the fuzz targets for a search with libFuzzer; needs clang" OFF)
option(QUIRLODUINO_COVERAGE "Count what is covered, with clang's source-based coverage" OFF)

if(QUIRLODUINO_FUZZ)
  # The program's own code is watched; the search itself is linked to the targets alone.
  target_compile_options(quirloduino_options INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(quirloduino_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(QUIRLODUINO_COVERAGE)
  target_compile_options(quirloduino_options INTERFACE -fprofile-instr-generate -fcoverage-mapping)
  target_link_options(quirloduino_options INTERFACE -fprofile-instr-generate)
endif()

# All targets at once, for scripts/fuzz.
add_custom_target(fuzz_targets)

# quirloduino_add_fuzz_target(SUBJECT [SOURCES more...] LINK libraries... COVERS product files...):
# the program fuzz_SUBJECT, or replay_SUBJECT with its test. COVERS names the files, from the top
# folder, by which scripts/fuzz measures the target; they are written to SUBJECT.covers.
function(quirloduino_add_fuzz_target subject)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK;COVERS" ${ARGN})
  list(JOIN arg_COVERS "\n" covers)
  file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/${subject}.covers" "${covers}\n")
  if(QUIRLODUINO_FUZZ)
    set(program fuzz_${subject})
    add_executable(${program} fuzz_${subject}.cpp ${arg_SOURCES})
    target_link_options(${program} PRIVATE -fsanitize=fuzzer)
  else()
    set(program replay_${subject})
    add_executable(${program} fuzz_${subject}.cpp replay_main.cpp ${arg_SOURCES})
    add_test(NAME fuzz_corpus.${subject}
             COMMAND ${program} "${CMAKE_CURRENT_SOURCE_DIR}/corpus/${subject}")
    set_tests_properties(fuzz_corpus.${subject} PROPERTIES LABELS harden)
  endif()
  target_link_libraries(${program} PRIVATE fuzz_support ${arg_LINK})
  add_dependencies(fuzz_targets ${program})
endfunction()
