# Stands in for every package that a Mac would get from Homebrew: present, with the targets asked for, and empty. The
# cache tells where it would have been looked for first.
macro(find_empty_package method name)
  set(${name}_FOUND TRUE)
  set(${name}_LOOKED_FOR_IN "${${name}_ROOT}" CACHE INTERNAL "")
  cmake_parse_arguments(wanted "" "" COMPONENTS ${ARGN})
  foreach(component IN ITEMS ${wanted_COMPONENTS} ${name} Core Gui gtest gtest_main benchmark benchmark_main)
    if(NOT TARGET ${name}::${component})
      add_library(${name}::${component} INTERFACE IMPORTED GLOBAL)
    endif()
  endforeach()
endmacro()
cmake_language(SET_DEPENDENCY_PROVIDER find_empty_package SUPPORTED_METHODS FIND_PACKAGE)

function(qt_add_resources)
endfunction()
