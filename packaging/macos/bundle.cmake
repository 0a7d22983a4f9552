# quiverly_bundle(TARGET): makes the executable the application Quiverly.app, with the clips and pictures as its
# resources. Not yet run on a Mac.
function(quiverly_bundle target)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME Quiverly
    MACOSX_BUNDLE ON
    MACOSX_BUNDLE_INFO_PLIST "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/Info.plist.in")
  quiverly_bundle_clips(${target})
  quiverly_bundle_resource(${target} "${CMAKE_BINARY_DIR}/resources/logo.png" "")
  quiverly_bundle_resource(${target} "${CMAKE_BINARY_DIR}/resources/AppIcon.icns" "")
  add_dependencies(${target} quiverly_images quiverly_icon)
endfunction()

# Every clip goes into the folder of its pack.
function(quiverly_bundle_clips target)
  file(GLOB clips RELATIVE "${PROJECT_SOURCE_DIR}/resources" CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/resources/audio/*/*.mp3")
  foreach(clip IN LISTS clips)
    cmake_path(GET clip PARENT_PATH folder)
    quiverly_bundle_resource(${target} "${PROJECT_SOURCE_DIR}/resources/${clip}" "${folder}")
  endforeach()
endfunction()

# The file goes into that folder of the bundle's resources.
function(quiverly_bundle_resource target file folder)
  target_sources(${target} PRIVATE "${file}")
  set_source_files_properties("${file}" PROPERTIES MACOSX_PACKAGE_LOCATION "Resources/${folder}")
endfunction()
