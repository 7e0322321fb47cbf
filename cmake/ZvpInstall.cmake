# cmake --install: header, libraries, pkg-config files, CMake package, and the x86-64-v3 build where asked for. What is
# installed may be moved as a whole: nothing in it names the prefix.
include(CMakePackageConfigHelpers)

install(FILES include/zvpvc.h core/include/zvpcore.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS zvpcore zvpvcmx zvpcore_static zvpvcmx_static EXPORT zvpvcmx-targets)
set_target_properties(zvpvcmx PROPERTIES INSTALL_RPATH "\$ORIGIN")  # the companion library stands beside it
if(ZVP_INSTALL_HWCAPS)
  install(TARGETS zvpvcmx_v3
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/glibc-hwcaps/x86-64-v3 COMPONENT hwcaps NAMELINK_SKIP)
  set_target_properties(zvpvcmx_v3 PROPERTIES INSTALL_RPATH "\$ORIGIN/../..")
endif()

# From the folder of the pkg-config files to the prefix, unless the folders were given as absolute paths.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(pc_prefix ${CMAKE_INSTALL_PREFIX})
  set(pc_libdir ${CMAKE_INSTALL_LIBDIR})
else()
  file(RELATIVE_PATH pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" pc_prefix "\${pcfiledir}/${pc_prefix}")
  set(pc_libdir "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  set(pc_includedir ${CMAKE_INSTALL_INCLUDEDIR})
else()
  set(pc_includedir "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
foreach(name zvpcore zvpvcmx)
  configure_file(packaging/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/zvpvcmx)
install(EXPORT zvpvcmx-targets NAMESPACE zvp:: DESTINATION ${package_dir})
configure_package_config_file(packaging/zvpvcmx-config.cmake.in zvpvcmx-config.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(zvpvcmx-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zvpvcmx-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/zvpvcmx-config-version.cmake
        DESTINATION ${package_dir})
