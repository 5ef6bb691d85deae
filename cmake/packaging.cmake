# The Debian package, made by `cpack` in a release tree; scripts/package-debian does all of it.
if(APPLE)
  return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmorandix-orlix)
set(CPACK_PACKAGE_VENDOR "the Velmorandix Orlix authors")
set(CPACK_PACKAGE_CONTACT "the Velmorandix Orlix authors <packages@velmorandix.invalid>")
set(CPACK_PACKAGE_VERSION ${ORLIX_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "chess against people and UCI engines")
set(CPACK_PACKAGE_DESCRIPTION
  "Play chess at one board, against any engine that speaks the Universal Chess\nInterface, or let two engines play each other. With clocks, strength limits,\nFEN and PGN, in English, German, Dutch and French.")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${ORLIX_BUILD})
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded by name, so no dependency that the package tools could see.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libcanberra0, stockfish")
include(CPack)
