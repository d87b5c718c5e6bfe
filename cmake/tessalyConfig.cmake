# tessaly::tessaly is the component, to be linked; tessaly::host is what a host links that loads it.
include(CMakeFindDependencyMacro)
find_dependency(PkgConfig)
pkg_check_modules(GUMBO REQUIRED IMPORTED_TARGET gumbo)
include(${CMAKE_CURRENT_LIST_DIR}/tessalyTargets.cmake)
