#pragma once

#include <optional>
#include <string>
#include <variant>

// The user's settings: a typed key-value store that outlives the process. Main thread. Every write takes effect for
// reads at once and reaches the disk on the store's own schedule, which waits for no other process; a store that cannot
// be read is empty, and one that cannot be written keeps its values for this run.
namespace quiverly::defaults {

struct OtherObject {}; // stored, but neither a number nor a text

using Object = std::variant<double, std::string, OtherObject>;

// None when no text is stored; some systems' stores answer the digits of a number.
std::optional<std::string> text(const char* key);

// None when nothing is stored.
std::optional<Object> object(const char* key);

void setText(const char* key, const std::string& value);
void setNumber(const char* key, double value);

} // namespace quiverly::defaults
