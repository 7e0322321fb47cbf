# The two libraries. Sources are found by folder, so that a new family is a new file and nothing else.
add_library(zvpcore SHARED core/src/zvpcore.cpp)
target_include_directories(zvpcore PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/core/include>
                                          $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(zvpcore PRIVATE $<BUILD_INTERFACE:zvp_flags>)
add_library(zvpcore_static STATIC core/src/zvpcore.cpp)
target_include_directories(zvpcore_static PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/core/include>
                                                 $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(zvpcore_static PRIVATE $<BUILD_INTERFACE:zvp_flags>)
set_target_properties(zvpcore_static PROPERTIES OUTPUT_NAME zvpcore)
foreach(target zvpcore zvpcore_static)
  set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET hidden)
  target_compile_options(${target} PRIVATE -fno-exceptions -fno-rtti)
endforeach()

file(GLOB_RECURSE ZVP_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/src/*.cpp)

# Short kernels whose statements stand in the order that is meant: GCC would load early and spill for it, and turn each
# row's address into a sum with the one before.
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  set_source_files_properties(src/h264/high_transform.cpp src/h264/intra.cpp src/h264/reconstruct.cpp
                              src/h264/transform.cpp src/h264/weight.cpp
                              PROPERTIES COMPILE_OPTIONS "-fno-schedule-insns2;-fno-tree-slsr")
  # Of a few instructions each and reached through a table: a cache line of their own keeps them at one speed.
  set_property(SOURCE src/h264/intra.cpp APPEND PROPERTY COMPILE_OPTIONS "-falign-functions=64")
endif()

# The version script: exactly the names of tests/exports.txt.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/tests/exports.txt)
file(STRINGS tests/exports.txt ZVP_EXPORTS REGEX "^zvp[A-Za-z0-9_]+$")
list(JOIN ZVP_EXPORTS ";\n    " ZVP_EXPORT_LINES)
file(CONFIGURE OUTPUT exports.map CONTENT "{\n  global:\n    @ZVP_EXPORT_LINES@;\n  local:\n    *;\n};\n" @ONLY)

# zvp_add_objects(NAME [flags...]): the library's objects, compiled once for both the shared and the static library.
function(zvp_add_objects name)
  add_library(${name} OBJECT ${ZVP_SOURCES})
  target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR}/include ${CMAKE_CURRENT_SOURCE_DIR}/core/include
                                     PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/src)
  target_link_libraries(${name} PRIVATE zvp_flags)
  target_compile_options(${name} PRIVATE -fno-exceptions -fno-rtti -fno-stack-protector -Wpedantic ${ARGN})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)  # No two exports may share an address, equal bodies or not.
    target_compile_options(${name} PRIVATE -fno-ipa-icf)
  endif()
  set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# zvp_add_shared(NAME OBJECTS): libzvpvcmx.so.6.1 with the link libzvpvcmx.so.
function(zvp_add_shared name objects)
  add_library(${name} SHARED $<TARGET_OBJECTS:${objects}>)
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
                                            $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_link_libraries(${name} PRIVATE zvpcore $<BUILD_INTERFACE:zvp_flags>)
  set_target_properties(${name} PROPERTIES OUTPUT_NAME zvpvcmx VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION}
                        LINK_DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/exports.map)
  target_link_options(${name} PRIVATE -Wl,--version-script=${CMAKE_CURRENT_BINARY_DIR}/exports.map -Wl,--as-needed
                                      -static-libgcc -Wl,-z,relro,-z,now)
  if(NOT ZVP_SANITIZE)
    target_link_options(${name} PRIVATE -Wl,-z,defs)
  endif()
endfunction()

zvp_add_objects(zvpvcmx_objects)
zvp_add_shared(zvpvcmx zvpvcmx_objects)
add_library(zvpvcmx_static STATIC $<TARGET_OBJECTS:zvpvcmx_objects>)
target_include_directories(zvpvcmx_static PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
                                                 $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(zvpvcmx_static PUBLIC zvpcore_static)
set_target_properties(zvpvcmx_static PROPERTIES OUTPUT_NAME zvpvcmx)

if(ZVP_INSTALL_HWCAPS)
  zvp_add_objects(zvpvcmx_v3_objects -march=x86-64-v3)
  zvp_add_shared(zvpvcmx_v3 zvpvcmx_v3_objects)
  set_target_properties(zvpvcmx_v3 PROPERTIES LIBRARY_OUTPUT_DIRECTORY glibc-hwcaps/x86-64-v3)
endif()
