# For tools/check-macos-objects: the compilers of zig, which bring the C and C++ headers of macOS, and the tests'
# declarations in place of the frameworks' headers. Nothing is linked.
#
# HOPSEL_ZIG_FOLDER holds the compilers as the script has made them.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 22)
set(CMAKE_SYSTEM_PROCESSOR arm64)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES HOPSEL_ZIG_FOLDER)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
foreach(language IN ITEMS C CXX OBJCXX)
  set(CMAKE_${language}_COMPILER ${HOPSEL_ZIG_FOLDER}/clang)
  set(CMAKE_${language}_COMPILER_WORKS TRUE)
endforeach()
foreach(language IN ITEMS CXX OBJCXX)
  set(CMAKE_${language}_COMPILER ${HOPSEL_ZIG_FOLDER}/clang++)
endforeach()
set(CMAKE_AR ${HOPSEL_ZIG_FOLDER}/ar)
set(CMAKE_RANLIB ${HOPSEL_ZIG_FOLDER}/ranlib)
set(CMAKE_INSTALL_NAME_TOOL ${HOPSEL_ZIG_FOLDER}/ranlib) # asked for, never run
