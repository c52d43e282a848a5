# How every target of the project is compiled, and the one function that
# declares a layer of src/.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

find_program(VELORA_CCACHE ccache)
if(VELORA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${VELORA_CCACHE})
endif()

find_package(Threads REQUIRED)

# Flags that every target shares. Rounding is part of the file formats, so the
# compiler may neither fuse nor reorder floating-point arithmetic.
add_library(velora_flags INTERFACE)
target_compile_options(velora_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  -Werror -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # g++ 12 takes the concatenation of strings for overlapping copies and overflows.
  target_compile_options(velora_flags INTERFACE -Wno-restrict -Wno-stringop-overflow)
endif()
if(VELORA_SANITIZE)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The checks that sanitizers insert hide from g++ what the standard library sets.
    target_compile_options(velora_flags INTERFACE -Wno-maybe-uninitialized)
  endif()
  target_compile_options(velora_flags INTERFACE
    -fsanitize=${VELORA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(velora_flags INTERFACE -fsanitize=${VELORA_SANITIZE})
endif()

# velora_layer(NAME FOLDER [LAYER...]) makes the static library velora_NAME from
# all sources of FOLDER, linked to the layers named and to nothing else.
function(velora_layer name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
  if(NOT sources)
    add_library(velora_${name} INTERFACE)
    return()
  endif()
  add_library(velora_${name} STATIC ${sources})
  target_include_directories(velora_${name} PUBLIC
    ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
  target_link_libraries(velora_${name} PRIVATE velora_flags)
  foreach(layer IN LISTS ARGN)
    target_link_libraries(velora_${name} PUBLIC velora_${layer})
  endforeach()
endfunction()
