#pragma once

#include <charconv>
#include <iterator>
#include <string>
#include <string_view>

// Values as JSON, appended to a text.
namespace quiverly::json {

// The shortest text that reads back as the same finite number of the same type.
template<class Number>
void appendNumber(std::string& text, Number number) {
    char digits[32];
    const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), number);
    text.append(digits, end);
}

// The text in quotation marks, as valid UTF-8.
void appendString(std::string& text, std::string_view bytes);

} // namespace quiverly::json
