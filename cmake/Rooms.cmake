# A room is one static library made of the sources that lie directly in its folder. It links exactly the
# rooms that it may know; the house test reads these declarations and holds every #include against them.
#
#   vex_room(NAME [KNOWS room...] [USES library...])
function(vex_room NAME)
  cmake_parse_arguments(ARG "" "" "KNOWS;USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(sources)
    add_library(${NAME} STATIC ${sources})
    target_include_directories(${NAME} PUBLIC ${CMAKE_SOURCE_DIR})
    target_link_libraries(${NAME} PUBLIC ${ARG_KNOWS} PRIVATE ${ARG_USES})
    vex_share_headers(${NAME} room_headers)
  else()
    add_library(${NAME} INTERFACE)
    target_include_directories(${NAME} INTERFACE ${CMAKE_SOURCE_DIR})
    target_link_libraries(${NAME} INTERFACE ${ARG_KNOWS} ${ARG_USES})
  endif()
endfunction()

# The tests of one room: every *.cpp in the folder becomes one program, run by CTest as a whole. Several run at
# once, but of those that use the real machine (its network, clock or processes) one at a time.
#
#   vex_tests(NAME KNOWS room... [USES library...] [REAL])
function(vex_tests NAME)
  cmake_parse_arguments(ARG "REAL" "" "KNOWS;USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(sources)
    add_executable(${NAME}_tests ${sources})
    target_include_directories(${NAME}_tests PRIVATE ${CMAKE_SOURCE_DIR})
    target_link_libraries(${NAME}_tests PRIVATE ${ARG_KNOWS} ${ARG_USES} GTest::gmock GTest::gtest_main)
    vex_share_headers(${NAME}_tests test_headers)
    set_target_properties(${NAME}_tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    add_test(NAME ${NAME} COMMAND ${NAME}_tests)
    set_tests_properties(${NAME} PROPERTIES TIMEOUT 300)
    if(ARG_REAL)
      set_tests_properties(${NAME} PROPERTIES RESOURCE_LOCK machine)
    endif()
  endif()
endfunction()
