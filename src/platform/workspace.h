#pragma once

#include <optional>
#include <string>

// The user's desktop around the program. Main thread.
namespace quiverly::workspace {

// Address of the page on which the user grants access to the motion sensor, or of one that explains how; nothing when
// it cannot be built.
std::optional<std::string> sensorAccessPage();

// Asks the desktop to show the page, whose address begins with a scheme. Neither waits nor reports.
void openURL(const std::string& url);

} // namespace quiverly::workspace
