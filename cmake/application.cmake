# The application: a bundle on macOS; on Linux a program with a desktop file, icons and sounds, for cmake --install.
include(GNUInstallDirs)

set(app velmorandix-orlix)
file(GLOB sounds CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/sounds/*.wav ${CMAKE_SOURCE_DIR}/resources/sounds/*.oga
  ${CMAKE_SOURCE_DIR}/resources/sounds/*.ogg)

# All but the main function: the tests have one of their own.
add_library(orlix_application STATIC ${CMAKE_SOURCE_DIR}/src/application.cpp)
target_link_libraries(orlix_application PUBLIC orlix_ui orlix_records orlix_engine orlix_game orlix_automatch orlix_l10n orlix_update
  orlix_platform Qt6::Widgets)
target_compile_definitions(orlix_application PRIVATE ORLIX_VERSION="${ORLIX_VERSION}" ORLIX_BUILD="${ORLIX_BUILD}"
  ORLIX_BUNDLE_IDENTIFIER="${ORLIX_BUNDLE_IDENTIFIER}" ORLIX_APP_NAME="${ORLIX_APP_NAME}")
add_executable(${app} ${CMAKE_SOURCE_DIR}/src/main.cpp)
target_link_libraries(${app} PRIVATE orlix_application)
set_target_properties(${app} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

if(APPLE)
  target_link_libraries(${app} PRIVATE orlix_platform_network)
  set(icon ${CMAKE_SOURCE_DIR}/packaging/macos/velmorandix-orlix.icns)
  if(EXISTS ${icon}) # made on a Mac by scripts/make-icons
    target_sources(${app} PRIVATE ${icon})
    set_source_files_properties(${icon} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
  endif()
  set_target_properties(${app} PROPERTIES
    OUTPUT_NAME "${ORLIX_APP_NAME}"
    MACOSX_BUNDLE ON
    MACOSX_BUNDLE_INFO_PLIST ${CMAKE_SOURCE_DIR}/packaging/macos/Info.plist.in)
  add_dependencies(${app} VelmorandixOrlixUpdater) # it puts itself into the bundle
  install(TARGETS ${app} BUNDLE DESTINATION .)
else()
  set(icons ${CMAKE_SOURCE_DIR}/packaging/linux/icons)
  install(TARGETS ${app} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  # The program looks for it beside its own folder, whatever the distribution calls its folder of libraries.
  add_dependencies(${app} orlix_https_module)
  install(TARGETS orlix_https_module LIBRARY DESTINATION ${CMAKE_INSTALL_BINDIR}/../lib/${app})
  install(FILES ${CMAKE_SOURCE_DIR}/packaging/linux/${app}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES ${icons}/${app}.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
  foreach(size 16 32 48 64 128 256 512)
    install(FILES ${icons}/${app}-${size}.png RENAME ${app}.png
      DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
  endforeach()
  if(sounds)
    install(FILES ${sounds} DESTINATION ${CMAKE_INSTALL_DATADIR}/${app}/sounds)
  endif()
  install(FILES ${CMAKE_SOURCE_DIR}/LICENSE RENAME copyright # as Debian calls it
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${app})
endif()

# Draws the icon's PNG files for scripts/make-icons; they are kept in the repository.
add_executable(render_icon EXCLUDE_FROM_ALL ${CMAKE_SOURCE_DIR}/packaging/render_icon.cpp)
target_link_libraries(render_icon PRIVATE orlix_options Qt6::Gui Qt6::Svg)
set_target_properties(render_icon PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
