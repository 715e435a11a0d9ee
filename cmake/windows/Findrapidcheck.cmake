# The property tests' library is packaged for the building machine alone; tests/windows/rapidcheck.h draws the
# same kinds of random values where it cannot be had.
if(NOT TARGET rapidcheck)
  add_library(rapidcheck INTERFACE IMPORTED GLOBAL)
  target_include_directories(rapidcheck INTERFACE ${CMAKE_SOURCE_DIR}/tests/windows)
endif()
set(rapidcheck_FOUND TRUE)
