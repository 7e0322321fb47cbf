# cmake --install: header, libraries, pkg-config files, CMake package, and the x86-64-v3 build where asked for.
include(CMakePackageConfigHelpers)

install(FILES include/zvpvc.h core/include/zvpcore.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS zvpcore zvpvcmx zvpcore_static zvpvcmx_static EXPORT zvpvcmx-targets)
if(ZVP_INSTALL_HWCAPS)
  install(TARGETS zvpvcmx_v3 DESTINATION ${CMAKE_INSTALL_LIBDIR}/glibc-hwcaps/x86-64-v3 NAMELINK_SKIP)
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
