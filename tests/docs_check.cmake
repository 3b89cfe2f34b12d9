# The manual page can't fall behind the option parsers: every option they look
# up must be described in it, and it must render without a warning. The bash
# completion may offer only options the parsers know, and all of the tool's
# own. Run as: cmake -DSOURCE_DIR=<tree> [-DGROFF=<groff>] -P docs_check.cmake

cmake_minimum_required(VERSION 3.20)

set(page_file "${SOURCE_DIR}/dist/vexa.1")
set(completion_file "${SOURCE_DIR}/dist/vexa.bash")
set(failures "")

# Option names as the parsers spell them: a quoted "-word" or "--word".
function(options_in out)
  set(found "")
  foreach(file IN LISTS ARGN)
    file(READ "${SOURCE_DIR}/${file}" text)
    string(REGEX MATCHALL "\"--?[a-z0-9_]+\"" quoted "${text}")
    list(APPEND found ${quoted})
  endforeach()
  list(TRANSFORM found REPLACE "\"" "")
  list(REMOVE_DUPLICATES found)
  set(${out} "${found}" PARENT_SCOPE)
endfunction()

options_in(tool_options driver/tool_options.cpp)
options_in(all_options driver/tool_options.cpp driver/common_options.cpp
           driver/run_record.cpp driver/run_record.h)
# The parsers know well over this many options: finding fewer means the way
# they name options has changed, and the checks below would pass on nothing.
set(fewest_parser_options 60)
list(LENGTH all_options count)
if(count LESS fewest_parser_options)
  message(FATAL_ERROR "only ${count} options found in the parsers; has the way they name options changed?")
endif()

# In roff each hyphen is written \-; an option must not be only the start of
# a longer one (-csv in -csvgen).
file(READ "${page_file}" page)
foreach(option IN LISTS all_options)
  string(REPLACE "-" "\\\\-" pattern "${option}")
  if(NOT page MATCHES "${pattern}[^a-z0-9_]")
    string(APPEND failures "  the manual page does not describe ${option}\n")
  endif()
endforeach()

# The words of its option list, and the options its case labels act on.
file(READ "${completion_file}" completion)
string(REGEX MATCH "options=\"[^\"]*\"" option_list "${completion}")
string(REGEX MATCHALL "-[a-z0-9_]+" offered "${option_list}")
string(REGEX MATCHALL "-[a-z0-9_]+ *[|)]" labels "${completion}")
list(TRANSFORM labels REPLACE " *[|)]$" "")
foreach(option IN LISTS offered labels)
  if(NOT option IN_LIST all_options)
    string(APPEND failures "  the completion names ${option}, which no parser knows\n")
  endif()
endforeach()
foreach(option IN LISTS tool_options)
  if(NOT option IN_LIST offered)
    string(APPEND failures "  the completion does not offer ${option}\n")
  endif()
endforeach()

if(GROFF AND EXISTS "${GROFF}")
  execute_process(COMMAND "${GROFF}" -man -Tutf8 -ww "${page_file}"
                  RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE warnings)
  if(NOT status EQUAL 0 OR NOT warnings STREQUAL "")
    string(APPEND failures "  groff -man -ww (exit ${status}):\n${warnings}")
  endif()
endif()

if(NOT failures STREQUAL "")
  message(FATAL_ERROR "\n${failures}")
endif()
message(STATUS "${count} options: all in the manual page; completion checked")
