# Fills a man page's @OPTIONS@ with what the tool itself prints for --help-all or --help, so that the
# page can't tell of an option that isn't there. Run with TOOL, TEMPLATE and PAGE.
execute_process(COMMAND "${TOOL}" --help-all OUTPUT_VARIABLE OPTIONS ERROR_QUIET RESULT_VARIABLE status)
if(status)
  execute_process(COMMAND "${TOOL}" --help OUTPUT_VARIABLE OPTIONS COMMAND_ERROR_IS_FATAL ANY)
endif()
# A backslash, a hyphen of an option and a dot or quote at a line's beginning mean something to troff.
string(REPLACE "\\" "\\e" OPTIONS "${OPTIONS}")
string(REPLACE "-" "\\-" OPTIONS "${OPTIONS}")
string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" OPTIONS "${OPTIONS}")
string(STRIP "${OPTIONS}" OPTIONS)
configure_file("${TEMPLATE}" "${PAGE}" @ONLY)
