# Run by CPack between the install into its staging tree and the packing.
# A Debian package keeps its manual pages gzipped, with no file name or time
# stamp in the gzip header (gzip -9n), so that the package is reproducible.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()
if(NOT CPACK_VEXA_GZIP)
  message(FATAL_ERROR "gzip is needed to pack the manual page")
endif()
file(GLOB_RECURSE pages LIST_DIRECTORIES false "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*")
list(FILTER pages INCLUDE REGEX "/man/man[1-9]/[^/]+\\.[1-9]$")
foreach(page IN LISTS pages)
  execute_process(COMMAND "${CPACK_VEXA_GZIP}" -9nf "${page}" RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "gzip of ${page} failed")
  endif()
endforeach()
