# One fuzzer: the source is NAME.cpp, its corpus lies in corpus/NAME below the fuzz folder.
#
#   vex_fuzzer(NAME [KNOWS room...] [USES library...])
function(vex_fuzzer NAME)
  cmake_parse_arguments(ARG "" "" "KNOWS;USES" ${ARGN})
  add_executable(${NAME} ${NAME}.cpp)
  target_link_libraries(${NAME} PRIVATE ${ARG_KNOWS} ${ARG_USES})
  target_compile_options(${NAME} PRIVATE -fsanitize=fuzzer)
  target_link_options(${NAME} PRIVATE -fsanitize=fuzzer)
  set_target_properties(${NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz)
endfunction()
