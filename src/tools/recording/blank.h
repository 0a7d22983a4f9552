#pragma once

namespace quiverly {

// Whether the character separates the words of a recording.
constexpr bool isBlank(char character) {
    return character == ' ' || character == '\t';
}

} // namespace quiverly
