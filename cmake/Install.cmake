include(CMakePackageConfigHelpers)

# Three components, one package each: the shared library (what a host's users
# need at run time), its development files, and the tool.
install(TARGETS keltemporalxmp EXPORT keltemporalxmpTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/keltemporalxmp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
foreach(layer xmptoolkit kelcore kelmediatypes kelmetadata)
  install(DIRECTORY platform/${layer}/include/${layer} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
endforeach()

install(EXPORT keltemporalxmpTargets
  NAMESPACE keltemporalxmp::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/keltemporalxmp COMPONENT development)
configure_package_config_file(cmake/keltemporalxmpConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/keltemporalxmpConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/keltemporalxmp)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/keltemporalxmpConfigVersion.cmake
  VERSION ${PROJECT_VERSION}
  COMPATIBILITY ${KELTXMP_COMPATIBILITY})
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/keltemporalxmpConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/keltemporalxmpConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/keltemporalxmp COMPONENT development)

# The way up from the pkg-config folder to the install prefix.
file(RELATIVE_PATH KELTXMP_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" KELTXMP_PC_PREFIX "${KELTXMP_PC_PREFIX}")
configure_file(cmake/keltemporalxmp.pc.in ${CMAKE_CURRENT_BINARY_DIR}/keltemporalxmp.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/keltemporalxmp.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
