# The standard headers that nearly every source includes, and for tests their library, are parsed once per build
# where VEX_PCH is on: in rooms by Clang alone, since GCC 12 sees overflows where there are none once it optimises
# what a precompiled header brings. Every source still includes what it uses: the dev preset builds without, and
# so does every preset what only Windows builds compile.

# Makes the headers that targets may share.
#
#   vex_shared_headers(NAME HEADERS header... [USES library...])
function(vex_shared_headers NAME)
  cmake_parse_arguments(ARG "" "" "HEADERS;USES" ${ARGN})
  if(VEX_PCH)
    set(source ${CMAKE_BINARY_DIR}/headers/${NAME}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "")
    add_library(${NAME} OBJECT ${source})
    target_link_libraries(${NAME} PRIVATE ${ARG_USES})
    target_precompile_headers(${NAME} PRIVATE ${ARG_HEADERS})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
      # A compiler cache brings them back with another time than they had.
      target_compile_options(${NAME} PRIVATE "SHELL:-Xclang -fno-pch-timestamp")
    endif()
  endif()
endfunction()

# Lets a target take the headers that were parsed as HEADERS.
function(vex_share_headers NAME HEADERS)
  if(TARGET ${HEADERS} AND NOT NAME MATCHES "(win32|com)(_tests)?$")
    target_precompile_headers(${NAME} REUSE_FROM ${HEADERS})
  endif()
endfunction()
