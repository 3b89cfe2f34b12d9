# What `cmake --install` puts under the prefix, and what the release carries
# beside the program: the version resource of vexa.exe. The packages
# themselves (.deb, .zip) are made by scripts/release.sh from the install.

include(GNUInstallDirs)

if(WIN32)
  install(TARGETS vexa RUNTIME DESTINATION .)
  install(FILES README.md LICENSE DESTINATION .)
else()
  install(TARGETS vexa RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES dist/vexa.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES dist/vexa.bash DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions
          RENAME vexa)
  install(FILES README.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()

# The version lives in project(): the tool's banner takes it from there
# (VEXA_VERSION); the manual page repeats it, and a release must not say two
# things about itself.
file(STRINGS ${PROJECT_SOURCE_DIR}/dist/vexa.1 page_version REGEX "^\\.TH ")
string(REGEX REPLACE ".*\"vexa ([^\"]*)\".*" "\\1" page_version "${page_version}")
if(NOT page_version STREQUAL PROJECT_VERSION)
  message(FATAL_ERROR "The version is ${PROJECT_VERSION} in CMakeLists.txt, but '${page_version}' in "
                      "the .TH line of dist/vexa.1")
endif()

# The holder of the copyright, as LICENSE names it, signs the version resource.
file(STRINGS ${PROJECT_SOURCE_DIR}/LICENSE VEXA_COPYRIGHT REGEX "^Copyright ")
string(REGEX REPLACE "^Copyright \\([cC]\\) [0-9, -]+ " "" VEXA_COPYRIGHT_HOLDER "${VEXA_COPYRIGHT}")

if(WIN32)
  # FILEVERSION has four numbers; project() may give fewer.
  set(VEXA_VERSION_NUMBERS)
  foreach(part MAJOR MINOR PATCH TWEAK)
    set(number ${PROJECT_VERSION_${part}})
    if(number STREQUAL "")
      set(number 0)
    endif()
    list(APPEND VEXA_VERSION_NUMBERS ${number})
  endforeach()
  string(REPLACE ";" "," VEXA_VERSION_NUMBERS "${VEXA_VERSION_NUMBERS}")
  enable_language(RC)
  configure_file(${PROJECT_SOURCE_DIR}/platform/win32/version.rc.in ${PROJECT_BINARY_DIR}/version.rc @ONLY)
  target_sources(vexa PRIVATE ${PROJECT_BINARY_DIR}/version.rc)
endif()
