# What users get: on Windows a zip of the three programs, stripped, with what a user has to know and the licences
# of everything that is linked into them; on Debian a package (cpack, in the build folder) with the programs, manual
# pages, completion, services and the demonstration.
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

if(NOT WIN32)
  include(GNUInstallDirs)
  set(packaging ${CMAKE_SOURCE_DIR}/packaging)
  set(demonstration ${CMAKE_INSTALL_DATADIR}/vexmonitor/demo)

  set(programs VexMonitor vexctl VexPostInstall)
  foreach(program vextray)
    if(TARGET ${program})
      list(APPEND programs ${program})
    endif()
  endforeach()
  # The player looks for the post-installation program beside itself: programs lie in one folder.
  install(TARGETS ${programs} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(TARGETS lightview RUNTIME DESTINATION ${CMAKE_INSTALL_LIBDIR}/vexmonitor)
  install(PROGRAMS ${packaging}/vexmonitor-demo DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(DIRECTORY demo/ DESTINATION ${demonstration}
          FILES_MATCHING PATTERN "*.py" PATTERN "*.ogg" PATTERN "*.mp4"
          PATTERN play_windows.py EXCLUDE PATTERN lightview EXCLUDE PATTERN __pycache__ EXCLUDE)
  install(FILES README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vexmonitor)
  install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vexmonitor
          PATTERN windows.md EXCLUDE)
  install(FILES packaging/debian/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vexmonitor)
  set(units packaging/systemd/vexmonitor.service)
  if(TARGET vextray)
    list(APPEND units packaging/systemd/vextray.service)
  endif()
  install(FILES ${units} DESTINATION lib/systemd/user)
  install(FILES ${packaging}/completions/vexctl
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)

  # Debian wants these compressed, and the same bytes from the same sources.
  function(install_compressed source name destination)
    set(compressed ${CMAKE_BINARY_DIR}/package/${name}.gz)
    add_custom_command(OUTPUT ${compressed} DEPENDS ${source} VERBATIM
      COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/package
      COMMAND sh -c "gzip -9nc '${source}' > '${compressed}'")
    set_property(GLOBAL APPEND PROPERTY VEX_COMPRESSED ${compressed})
    install(FILES ${compressed} DESTINATION ${destination})
  endfunction()
  install_compressed(${packaging}/debian/changelog changelog.Debian ${CMAKE_INSTALL_DATADIR}/doc/vexmonitor)
  foreach(page VexMonitor vexctl VexPostInstall vexmonitor-demo)
    install_compressed(${packaging}/man/${page}.1 ${page}.1 ${CMAKE_INSTALL_MANDIR}/man1)
  endforeach()
  if(TARGET vextray)
    install_compressed(${packaging}/man/vextray.1 vextray.1 ${CMAKE_INSTALL_MANDIR}/man1)
  endif()
  get_property(compressed GLOBAL PROPERTY VEX_COMPRESSED)
  add_custom_target(compressed ALL DEPENDS ${compressed})

  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_STRIP_FILES ON)
  set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
      WORLD_READ WORLD_EXECUTE)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_NAME vexmonitor)
  set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
  set(CPACK_DEBIAN_PACKAGE_MAINTAINER "VexMonitor developers <vexmonitor@example.org>")
  set(CPACK_DEBIAN_PACKAGE_SECTION sound)
  set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  # Loaded when a show with media comes, so the linker does not know of it.
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "libmpv2")
  # The demonstration is a script.
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "python3, systemd")
  set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "unattended show player for computer-controlled lights")
  set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"At the second the schedule says so the player opens a show file, plays its
startup sequences, then animations and songs with the lights in step with the
music, answers buttons and sensors, and closes with the shutdown sequences:
every night, for weeks, with nobody watching.

Lights go out as E1.31 (sACN) or Art-Net packets; songs and videos play
through libmpv; sequences are cue files (JSON) or frame files (FSEQ 1 and 2).

This package has the player VexMonitor, its companion vexctl, the tray vextray
with its log and its page for the phone, services for a user's session and a
demonstration.")

  set(CPACK_PACKAGE_NAME VexMonitor)
  set(CPACK_PACKAGE_VENDOR "VexMonitor developers")
  set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
  set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
  include(CPack)
endif()
