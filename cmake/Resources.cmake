# Where programs find their resources: beside the programs of this build as links into the source folder, and in the
# data folder of an installation.

file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/resources")
file(CREATE_LINK "${CMAKE_SOURCE_DIR}/resources/audio" "${CMAKE_BINARY_DIR}/resources/audio" SYMBOLIC)

install(DIRECTORY resources/audio DESTINATION "${CMAKE_INSTALL_DATADIR}/quiverly" FILES_MATCHING PATTERN "*.mp3")
