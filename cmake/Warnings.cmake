# Warnings are errors in every target of the project; sanitizers are one switch for all of them.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlapping copies in "literal" + std::string where there are none, once it optimises, and copies that
  # are too long once it does so while linking.
  add_compile_options(-Wno-restrict)
  add_link_options($<$<BOOL:${CMAKE_INTERPROCEDURAL_OPTIMIZATION}>:-Wno-stringop-overflow>)
endif()
if(VEX_SANITIZE)
  add_compile_options(-fsanitize=${VEX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VEX_SANITIZE})
endif()
if(VEX_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
