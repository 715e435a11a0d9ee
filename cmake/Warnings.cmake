# Warnings are errors in every target of the project; sanitizers are one switch for all of them.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Werror)
if(VEX_SANITIZE)
  add_compile_options(-fsanitize=${VEX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VEX_SANITIZE})
endif()
if(VEX_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
