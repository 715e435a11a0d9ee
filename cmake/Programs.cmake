# What a program is beside its sources: where it lies, which machine it is for and, on Windows, its icon, its
# version and room for the largest message that the machine hands over on the stack.
#
#   vex_program(NAME DESCRIPTION text [WINDOWED])
#
# A WINDOWED program has no console of its own.
function(vex_program NAME)
  cmake_parse_arguments(ARG "WINDOWED" "DESCRIPTION" "" ${ARGN})
  set_target_properties(${NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  if(NOT WIN32)
    target_link_libraries(${NAME} PRIVATE host_linux)
    return()
  endif()
  target_link_libraries(${NAME} PRIVATE host_win32)
  target_link_options(${NAME} PRIVATE -Wl,--stack,33554432)
  set_target_properties(${NAME} PROPERTIES WIN32_EXECUTABLE ${ARG_WINDOWED})

  set(VEX_ICON ${CMAKE_BINARY_DIR}/programs/VexMonitor.ico)
  if(NOT TARGET icon)
    set(script ${CMAKE_SOURCE_DIR}/programs/windows/draw_icon.py)
    add_custom_command(OUTPUT ${VEX_ICON} COMMAND python3 ${script} ${VEX_ICON} DEPENDS ${script})
    add_custom_target(icon DEPENDS ${VEX_ICON})
  endif()
  set(VEX_PROGRAM ${NAME})
  set(VEX_DESCRIPTION ${ARG_DESCRIPTION})
  configure_file(${CMAKE_SOURCE_DIR}/programs/windows/program.rc.in ${CMAKE_BINARY_DIR}/programs/${NAME}.rc @ONLY)
  target_sources(${NAME} PRIVATE ${CMAKE_BINARY_DIR}/programs/${NAME}.rc)
  set_source_files_properties(${CMAKE_BINARY_DIR}/programs/${NAME}.rc PROPERTIES OBJECT_DEPENDS ${VEX_ICON})
  add_dependencies(${NAME} icon)
endfunction()
