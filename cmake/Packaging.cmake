# Debian packages, one per install component: `cpack -G DEB` in a Release build.
# The library's package is named after its SONAME, so two ABIs can be installed
# side by side; the development files and the tool depend on the exact version.
set(CPACK_PACKAGE_NAME keltemporalxmp)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "keltemporalxmp developers <keltemporalxmp@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development tool)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The tool's dependency on our own library comes from the component order below.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(summary "time-based XMP metadata: marker tracks, ingredients, pantry")
# CPack indents every line of the long description by one space itself.
set(details
  "\nReads, edits and writes the time-based parts of XMP metadata: tracks of\nmarkers, the ingredients a composed document was built from, and the\npantry; gathers every marker of a composition and its nested sources\nonto one timeline.")

set(library_package libkeltemporalxmp${KELTXMP_SOVERSION})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "${summary} (shared library)${details}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkeltemporalxmp-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
# The kelcore JSON header includes nlohmann's.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS nlohmann-json3-dev)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "${summary} (development files)${details}\n.\nHeaders, CMake package and pkg-config file.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME keltemporalxmp)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_TOOL_DEPENDS library)
set(CPACK_COMPONENT_TOOL_DESCRIPTION
  "${summary} (command-line tool)${details}\n.\nThe keltemporalxmp command, its man page and bash completion.")

# Each package's copyright and changelog, as Debian wants them; only the
# packages install these (a plain install leaves them out).
string(TIMESTAMP KELTXMP_CHANGELOG_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(packaging/changelog.in ${CMAKE_CURRENT_BINARY_DIR}/packaging/changelog @ONLY)
execute_process(COMMAND gzip -9nf ${CMAKE_CURRENT_BINARY_DIR}/packaging/changelog COMMAND_ERROR_IS_FATAL ANY)
foreach(component library development tool)
  string(TOUPPER ${component} upper)
  install(FILES packaging/copyright ${CMAKE_CURRENT_BINARY_DIR}/packaging/changelog.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}
    COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()

include(CPack)
