# What find_package(VeloraUtil) offers to other projects, installed as the component
# "development":
#   Velora::interfaces  the headers of include/velora, for hosts and siblings
#   Velora::audio       sounds, coders and sound files, as a static library
#   Velora::curves      control curves, as a static library

include(CMakePackageConfigHelpers)

set(VELORA_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/VeloraUtil)
set(VELORA_ARCHIVE_DIR ${CMAKE_INSTALL_LIBDIR}/veloralib)
set(VELORA_HEADER_DIR ${CMAKE_INSTALL_INCLUDEDIR}/veloralib)

# velora_package_layers(OUT LAYER...) gives the layers named and all below them, lowest last.
function(velora_package_layers out)
  set(found)
  set(open ${ARGN})
  while(open)
    list(POP_FRONT open layer)
    list(REMOVE_ITEM found ${layer})
    list(APPEND found ${layer})
    get_target_property(below velora_${layer} INTERFACE_LINK_LIBRARIES)
    list(FILTER below INCLUDE REGEX "^velora_")
    list(TRANSFORM below REPLACE "^velora_" "")
    list(APPEND open ${below})
  endwhile()
  set(${out} ${found} PARENT_SCOPE)
endfunction()

function(velora_install_package)
  velora_package_layers(layers wavefileutil curves)
  foreach(layer IN LISTS layers)
    get_target_property(below velora_${layer} INTERFACE_LINK_LIBRARIES)
    list(FILTER below INCLUDE REGEX "^velora_")
    list(TRANSFORM below REPLACE "^velora_" "Velora::")
    string(APPEND VELORA_PACKAGE_LAYERS "velora_imported(${layer} \"${below}\")\n")
    install(TARGETS velora_${layer} ARCHIVE DESTINATION ${VELORA_ARCHIVE_DIR}
      COMPONENT development)
  endforeach()
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/velora
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
  foreach(folder platform foundation catalogue pinmap audio curves)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/${folder} DESTINATION ${VELORA_HEADER_DIR}
      COMPONENT development FILES_MATCHING PATTERN "*.h")
  endforeach()
  set(config ${CMAKE_CURRENT_BINARY_DIR}/VeloraUtilConfig.cmake)
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VeloraUtilConfig.cmake.in ${config}
    INSTALL_DESTINATION ${VELORA_PACKAGE_DIR}
    PATH_VARS CMAKE_INSTALL_INCLUDEDIR VELORA_HEADER_DIR VELORA_ARCHIVE_DIR)
  write_basic_package_version_file(${config}Version.cmake COMPATIBILITY SameMinorVersion)
  install(FILES ${config} DESTINATION ${VELORA_PACKAGE_DIR} COMPONENT development)
  install(FILES ${config}Version.cmake DESTINATION ${VELORA_PACKAGE_DIR}
    RENAME VeloraUtilConfigVersion.cmake COMPONENT development)
endfunction()
