# Packages: "cpack" in the build folder makes a .deb on Linux, an installer and a .zip on Windows.
set(CPACK_PACKAGE_NAME zint-obd)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR ${ZINT_MAKER})
set(CPACK_PACKAGE_CONTACT ${ZINT_MAKER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGE_DESCRIPTION
  "Zint reads the malfunction indicator, the stored trouble codes and the readiness\n\
monitors of road vehicles through an ELM327 adapter on a serial port, and clears\n\
the codes on request. A simulated vehicle lets everything be tried at a desk.")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_EXECUTABLES zint-obd Zint) # the start menu's entry
set(CPACK_STRIP_FILES ON)

if(WIN32)
  set(CPACK_GENERATOR NSIS ZIP)
  set(CPACK_PACKAGE_INSTALL_DIRECTORY Zint)
  set(CPACK_NSIS_DISPLAY_NAME "Zint ${PROJECT_VERSION}")
  set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION utils)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  # Plugins are no library dependencies: the icons are SVG drawings, and the windows need a platform to be on.
  set(CPACK_DEBIAN_PACKAGE_DEPENDS libqt6svg6)
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-qpa-plugins, xdg-utils")
endif()

include(CPack)
