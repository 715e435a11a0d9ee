# Libraries that are headers alone serve Windows as they lie on the building machine. Their folder stands
# beside headers of that machine's own C library, so each is reached by a link in a folder that holds
# nothing else.
#
#   vex_host_headers(TARGET FOLDER)     FOLDER as it lies below /usr/include
function(vex_host_headers TARGET FOLDER)
  if(TARGET ${TARGET})
    return()
  endif()
  if(NOT EXISTS /usr/include/${FOLDER})
    message(FATAL_ERROR "/usr/include/${FOLDER} is missing; run cmake/install-packages.sh windows")
  endif()
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
  file(CREATE_LINK /usr/include/${FOLDER} ${CMAKE_BINARY_DIR}/headers/${FOLDER} SYMBOLIC)
  add_library(${TARGET} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${TARGET} SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/headers)
endfunction()
