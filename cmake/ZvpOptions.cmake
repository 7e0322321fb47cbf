# Build-wide choices. Everything that a user may set is an option or cache variable with the prefix ZVP_.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug or Release" FORCE)
endif()
if(CMAKE_CXX_FLAGS_RELEASE STREQUAL "-O3 -DNDEBUG")  # CMake's own default; whatever a user chose stays
  set(CMAKE_CXX_FLAGS_RELEASE "-O2")
endif()

set(ZVP_LEVEL "" CACHE STRING "Instruction-set level: empty for x86-64, or x86-64-v3")
option(ZVP_SIMD_PLAIN "Build the SIMD layer as plain loops, for comparison" OFF)
set(ZVP_SANITIZE "" CACHE STRING "Sanitizers, for instance address,undefined")
option(ZVP_WERROR "Turn warnings into errors" OFF)
option(ZVP_FUZZ "Build the fuzz targets with libFuzzer (needs clang)" OFF)
option(ZVP_INSTALL_HWCAPS "Also build and install the library for x86-64-v3 below glibc-hwcaps" OFF)

# What every target of the tree is compiled with.
add_library(zvp_flags INTERFACE)
target_compile_options(zvp_flags INTERFACE -Wall -Wextra -Wconversion -Wshadow -ffp-contract=off)
if(ZVP_WERROR)
  target_compile_options(zvp_flags INTERFACE -Werror)
endif()
if(ZVP_LEVEL)
  target_compile_options(zvp_flags INTERFACE -march=${ZVP_LEVEL})
endif()
if(ZVP_SIMD_PLAIN)
  target_compile_definitions(zvp_flags INTERFACE ZVP_SIMD_PLAIN)
endif()
if(ZVP_SANITIZE)
  target_compile_options(zvp_flags INTERFACE -fsanitize=${ZVP_SANITIZE} -fno-sanitize-recover=all -O1 -g1
                                             -fno-omit-frame-pointer)
  target_link_options(zvp_flags INTERFACE -fsanitize=${ZVP_SANITIZE})
endif()

if(ZVP_FUZZ)  # coverage feedback from the library; the fuzz targets themselves link libFuzzer
  target_compile_options(zvp_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Tests and tools do arithmetic of all kinds on purpose; the conversion warnings are for the library.
add_library(zvp_tool_flags INTERFACE)
target_link_libraries(zvp_tool_flags INTERFACE zvp_flags)
target_compile_options(zvp_tool_flags INTERFACE -Wno-conversion -Wno-sign-conversion)
