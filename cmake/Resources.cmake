# Where programs find their resources: beside the programs of this build as links into the source folder, and in the
# data folder of an installation.

file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/resources")
foreach(resource IN ITEMS audio motion-sensor.html)
  file(CREATE_LINK "${CMAKE_SOURCE_DIR}/resources/${resource}" "${CMAKE_BINARY_DIR}/resources/${resource}" SYMBOLIC)
endforeach()

install(DIRECTORY resources/audio DESTINATION "${CMAKE_INSTALL_DATADIR}/quiverly" FILES_MATCHING PATTERN "*.mp3")
install(FILES resources/motion-sensor.html DESTINATION "${CMAKE_INSTALL_DATADIR}/quiverly")
