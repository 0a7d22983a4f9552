#include "tools/replay/JsonText.h"

#include <algorithm>
#include <cstdio>

#include "tools/replay/utf8.h"

namespace quiverly::json {

namespace {

void appendEscaped(std::string& text, char character) {
    switch (character) {
    case '"':
        text += "\\\"";
        return;
    case '\\':
        text += "\\\\";
        return;
    case '\b':
        text += "\\b";
        return;
    case '\f':
        text += "\\f";
        return;
    case '\n':
        text += "\\n";
        return;
    case '\r':
        text += "\\r";
        return;
    case '\t':
        text += "\\t";
        return;
    default:
        break;
    }
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= 0x20) {
        text += character;
    } else {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(byte));
        text += escape;
    }
}

bool standsForItself(char character) {
    return ' ' <= character && character <= '~' && character != '"' && character != '\\';
}

} // namespace

void appendString(std::string& text, std::string_view bytes) {
    text += '"';
    if (std::ranges::all_of(bytes, standsForItself)) {
        text += bytes;
    } else {
        for (const char character : validUtf8(bytes)) appendEscaped(text, character);
    }
    text += '"';
}

} // namespace quiverly::json
