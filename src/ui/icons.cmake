# The icon set, compiled into the program. The target form of qt_add_resources hands the object file on to
# whatever links this static library, so that no Q_INIT_RESOURCE is needed.
file(GLOB orlix_icon_files CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/icons/*.svg)
qt_add_resources(orlix_ui orlix_icons
  PREFIX "/icons"
  BASE ${CMAKE_SOURCE_DIR}/resources/icons
  FILES ${orlix_icon_files})
