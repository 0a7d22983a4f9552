#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace quiverly {

// One of the sound packs between which the user chooses. Each is a resource folder of clips, ordered by file name; in a
// pack that escalates that order runs from the mildest clip to the strongest.
class SoundPack {
public:
    enum Case : std::uint8_t { pain, sexy, halo, lizard };

    static const std::array<SoundPack, 4> allCases; // in the order in which they are offered

    constexpr SoundPack(Case value) : value(value) {}

    // The pack of exactly that raw value, if there is one.
    static constexpr std::optional<SoundPack> fromRawValue(std::string_view rawValue);

    constexpr const char* rawValue() const { return facts().rawValue; } // how a pack is stored
    constexpr const char* id() const { return rawValue(); }
    constexpr const char* folder() const { return rawValue(); }
    constexpr const char* title() const { return facts().title; } // shown to the user

    // Whether clips follow the pace of the slaps instead of chance.
    constexpr bool escalates() const { return facts().escalates; }

    friend constexpr bool operator==(SoundPack a, SoundPack b) { return a.value == b.value; }

private:
    struct Facts {
        const char* rawValue;
        const char* title;
        bool escalates;
    };

    constexpr const Facts& facts() const { return table[value]; }

    static constexpr Facts table[] = {
        {"pain", "Pain", false},
        {"sexy", "Sexy", true},
        {"halo", "Halo", false},
        {"lizard", "Lizard", true},
    };

    Case value;
};

inline constexpr std::array<SoundPack, 4> SoundPack::allCases = {pain, sexy, halo, lizard};

constexpr std::optional<SoundPack> SoundPack::fromRawValue(std::string_view rawValue) {
    for (const SoundPack pack : allCases) {
        if (pack.rawValue() == rawValue) return pack;
    }
    return std::nullopt;
}

} // namespace quiverly

template<>
struct std::hash<quiverly::SoundPack> {
    std::size_t operator()(quiverly::SoundPack pack) const noexcept {
        return std::hash<std::string_view>{}(pack.rawValue());
    }
};
