# What users get: on Windows a zip of the three programs, stripped, with what a user has to know and the licences
# of everything that is linked into them.
#
#   cmake --build --preset windows-i686 --target package      makes VexMonitor-VERSION-windows-i686.zip there

# Debian's word on whose a library is and how it may be handed on.
#
#   vex_licence(NAME PACKAGE)     NAME as the text is called in the package
function(vex_licence NAME PACKAGE)
  if(NOT EXISTS /usr/share/doc/${PACKAGE}/copyright)
    message(WARNING "/usr/share/doc/${PACKAGE}/copyright is missing: no package can be made without it")
  endif()
  install(FILES /usr/share/doc/${PACKAGE}/copyright DESTINATION licences RENAME ${NAME}.txt)
endfunction()

if(WIN32)
  install(TARGETS VexMonitor vexctl VexPostInstall RUNTIME DESTINATION .)
  # Texts end their lines as the machine's own editor wants them.
  configure_file(${CMAKE_SOURCE_DIR}/packaging/windows/README.txt.in ${CMAKE_BINARY_DIR}/package/README.txt
                 @ONLY NEWLINE_STYLE CRLF)
  configure_file(${CMAKE_SOURCE_DIR}/LICENSE ${CMAKE_BINARY_DIR}/package/LICENSE.txt COPYONLY)
  install(FILES ${CMAKE_BINARY_DIR}/package/README.txt ${CMAKE_BINARY_DIR}/package/LICENSE.txt DESTINATION .)
  install(FILES ${CMAKE_SOURCE_DIR}/docs/settings.md ${CMAKE_SOURCE_DIR}/docs/planning.md
          ${CMAKE_SOURCE_DIR}/docs/december.svg DESTINATION docs)
  vex_licence(CLI11 libcli11-dev)
  vex_licence(nlohmann-json nlohmann-json3-dev)
  vex_licence(zlib libz-mingw-w64-dev)
  vex_licence(zstd libzstd-dev)
  vex_licence(gcc g++-mingw-w64-x86-64-posix)
  vex_licence(mingw-w64 mingw-w64-common)

  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME VexMonitor-${PROJECT_VERSION}-windows-${MINGW_ARCH})
  set(CPACK_STRIP_FILES ON)
  set(CPACK_VERBATIM_VARIABLES ON)
  include(CPack)
endif()
