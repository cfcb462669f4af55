# What every target of the project is compiled with: warnings, and the sanitizers when they are asked for. Warnings are
# errors where the project is tested; elsewhere the next compiler or toolkit may warn of what this one did not.
add_library(hopsel_warnings INTERFACE)
target_compile_options(hopsel_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Wold-style-cast
  -Woverloaded-virtual $<$<BOOL:${HOPSEL_WARNINGS_AS_ERRORS}>:-Werror>)

if(HOPSEL_SANITIZERS)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(HOPSEL_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
endif()
