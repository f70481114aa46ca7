# What `cmake --install` puts in place: the library with its two headers, the ormak tool, a
# pkg-config file and a CMake package that gives the target Ormak::ormak.
include(CMakePackageConfigHelpers)

set_target_properties(ormak PROPERTIES
  VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
  PUBLIC_HEADER "${PROJECT_SOURCE_DIR}/src/Ormak.h;${PROJECT_SOURCE_DIR}/src/OrmakStructures.h")

install(TARGETS ormak EXPORT OrmakTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  PUBLIC_HEADER DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS ormak_cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

set(ORMAK_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Ormak)
install(EXPORT OrmakTargets NAMESPACE Ormak:: DESTINATION ${ORMAK_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/OrmakConfig.cmake.in
  ${PROJECT_BINARY_DIR}/OrmakConfig.cmake INSTALL_DESTINATION ${ORMAK_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrmakConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OrmakConfig.cmake ${PROJECT_BINARY_DIR}/OrmakConfigVersion.cmake
  DESTINATION ${ORMAK_CMAKE_DIR})

# The pkg-config file names its directories relative to its own place, so that a prefix
# given only at install time still holds.
file(RELATIVE_PATH ORMAK_PC_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${PROJECT_SOURCE_DIR}/cmake/ormak.pc.in ${PROJECT_BINARY_DIR}/ormak.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ormak.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
