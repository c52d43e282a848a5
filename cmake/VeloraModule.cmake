# Modules that are loaded at run time: VeloraUtil itself and its siblings.
#
# A module exports the symbols that it is loaded for and nothing else, so that two
# modules never bind to each other's copy of a function, and so that the loader can
# unmap it once it is closed.

# Where the build puts modules and the data files that lie beside them. Seen from
# the program it is the place where an installed program finds them as well.
set(VELORA_MODULE_DIR ${PROJECT_BINARY_DIR}/apps/lib/velora)
set(VELORA_MODULE_INSTALL_DIR ${CMAKE_INSTALL_LIBDIR}/velora)

# velora_module(NAME FOLDER EXPORTS SYMBOL... [LAYERS LAYER...]) builds NAME.so from
# all sources of FOLDER, linked to the layers named. The target is module_NAME.
#
# VELORA_COUNT_OBJECTS is 1 except in a release build: a module then tells on
# standard error which objects were not released before it was unloaded.
function(velora_module name folder)
  cmake_parse_arguments(PARSE_ARGV 2 module "" "" "EXPORTS;LAYERS")
  if(NOT module_EXPORTS)
    message(FATAL_ERROR "velora_module(${name}): a module without exports is of no use")
  endif()
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)

  set(target module_${name})
  add_library(${target} MODULE ${sources})
  set_target_properties(${target} PROPERTIES
    PREFIX "" OUTPUT_NAME ${name} LIBRARY_OUTPUT_DIRECTORY ${VELORA_MODULE_DIR})
  target_compile_definitions(${target} PRIVATE
    VELORA_COUNT_OBJECTS=$<NOT:$<CONFIG:Release>>)
  target_link_libraries(${target} PRIVATE velora_flags)
  foreach(layer IN LISTS module_LAYERS)
    target_link_libraries(${target} PRIVATE velora_${layer})
  endforeach()

  string(REPLACE ";" "; " symbols "${module_EXPORTS}")
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${name}.map)
  file(CONFIGURE OUTPUT ${script} CONTENT "{ global: ${symbols}; local: *; };\n")
  target_link_options(${target} PRIVATE -Wl,--version-script=${script})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
  if(NOT VELORA_SANITIZE)
    target_link_options(${target} PRIVATE -Wl,-z,defs)
  endif()

  install(TARGETS ${target} LIBRARY DESTINATION ${VELORA_MODULE_INSTALL_DIR})
endfunction()

# velora_data(FOLDER) puts the folder's files beside the modules, by the target data.
function(velora_data folder)
  file(GLOB files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cfg
       ${PROJECT_SOURCE_DIR}/${folder}/*.ini)
  set(copies)
  foreach(file IN LISTS files)
    cmake_path(GET file FILENAME name)
    add_custom_command(OUTPUT ${VELORA_MODULE_DIR}/${name} DEPENDS ${file} VERBATIM
      COMMAND ${CMAKE_COMMAND} -E copy ${file} ${VELORA_MODULE_DIR}/${name})
    list(APPEND copies ${VELORA_MODULE_DIR}/${name})
  endforeach()
  add_custom_target(data ALL DEPENDS ${copies})
  install(FILES ${files} DESTINATION ${VELORA_MODULE_INSTALL_DIR})
endfunction()
