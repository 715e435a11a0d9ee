# A Windows program carries all its libraries, so there everything is built small (-Os, see the presets), but for rooms
# through which each lighting event and each byte of a show goes.
#
#   vex_fast(target ...)
function(vex_fast)
  if(NOT WIN32)
    return()
  endif()
  foreach(target ${ARGN})
    target_compile_options(${target} PRIVATE -O2)
  endforeach()
endfunction()
