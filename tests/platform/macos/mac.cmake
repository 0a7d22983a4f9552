# The tests of the macOS code on macOS itself. Not yet run on a Mac.

# What is taken for granted about the frameworks.
add_library(quiverly_apple_signatures OBJECT AppleSignatures.cpp)
set_source_files_properties(AppleSignatures.cpp PROPERTIES LANGUAGE OBJCXX)
target_link_libraries(quiverly_apple_signatures PRIVATE quiverly_headers)

# In a bundle, which has the application's resources and settings of its own.
quiverly_test(macos-system-tests
  SOURCES ${system_tests} system/MacHidTest.cpp
  LIBRARIES quiverly_platform_macos
  PROPERTIES LABELS macos)
target_compile_options(macos-system-tests PRIVATE $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>)
set_target_properties(macos-system-tests PROPERTIES
  MACOSX_BUNDLE ON
  MACOSX_BUNDLE_GUI_IDENTIFIER "${QUIVERLY_IDENTIFIER}.tests")
quiverly_bundle_clips(macos-system-tests)

# All of the platform but the workspace, which would open System Settings.
if(QUIVERLY_APPLICATION)
  quiverly_test(macos-start-tests
    SOURCES
      system/MacStartTest.cpp
      ../../support/closed_workspace.cpp
      ../../ui/main.cpp
      $<FILTER:$<TARGET_OBJECTS:quiverly_platform_macos>,EXCLUDE,/workspace\.mm\.o$>
    LIBRARIES
      quiverly_ui quiverly_standard quiverly_qt
      $<TARGET_PROPERTY:quiverly_platform_macos,INTERFACE_LINK_LIBRARIES> Qt6::Test
    PROPERTIES LABELS macos)
endif()
