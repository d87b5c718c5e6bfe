# What `cmake --install` gives to whoever writes a host: the headers, both libraries, the kit of a
# host that loads, and a package for find_package(tessaly).
include(CMakePackageConfigHelpers)

set(headers ${CMAKE_INSTALL_INCLUDEDIR}/tessaly)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/tessaly)

install(DIRECTORY src/ DESTINATION ${headers} FILES_MATCHING PATTERN *.h PATTERN pictures EXCLUDE)
install(DIRECTORY platform DESTINATION ${headers} FILES_MATCHING PATTERN *.h PATTERN page EXCLUDE)

set_target_properties(tessaly_lib PROPERTIES EXPORT_NAME tessaly)
set_target_properties(tessaly_host PROPERTIES EXPORT_NAME host)
foreach(target tessaly_lib tessaly_host)
  target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:${headers}>)
  target_compile_features(${target} INTERFACE cxx_std_20)
endforeach()
install(TARGETS tessaly_lib tessaly_host EXPORT tessaly ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS tessaly_shared LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

install(EXPORT tessaly NAMESPACE tessaly:: FILE tessalyTargets.cmake DESTINATION ${package})
write_basic_package_version_file(tessalyConfigVersion.cmake COMPATIBILITY ExactVersion)
install(FILES cmake/tessalyConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/tessalyConfigVersion.cmake
        DESTINATION ${package})
