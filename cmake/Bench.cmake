# One benchmark program of Google Benchmark; the source is NAME.cpp in the bench folder.
#
#   vex_bench(NAME [KNOWS room...] [USES library...])
function(vex_bench NAME)
  cmake_parse_arguments(ARG "" "" "KNOWS;USES" ${ARGN})
  add_executable(${NAME} ${NAME}.cpp)
  target_link_libraries(${NAME} PRIVATE ${ARG_KNOWS} ${ARG_USES} benchmark::benchmark)
  set_target_properties(${NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
endfunction()
