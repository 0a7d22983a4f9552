#include "tools/replay/utf8.h"

#include <cstdint>

#include <unicode/unistr.h>

namespace quiverly {

std::string validUtf8(std::string_view bytes) {
    std::string text;
    const icu::StringPiece piece(bytes.data(), static_cast<std::int32_t>(bytes.size()));
    icu::UnicodeString::fromUTF8(piece).toUTF8String(text);
    return text;
}

} // namespace quiverly
