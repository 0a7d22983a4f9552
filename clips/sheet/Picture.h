#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace quiverly::clips {

// A small picture of at most 256 colours, to be saved as PNG.
class Picture {
public:
    using Colour = std::array<std::uint8_t, 3>; // red, green, blue

    // All of the palette's first colour.
    Picture(std::size_t width, std::size_t height, std::vector<Colour> palette);

    std::size_t width() const { return columns; }
    std::size_t height() const { return pixels.size() / columns; }

    // Sets the pixel in a column and row, counted from the upper left corner, to a colour of the palette.
    void set(std::size_t column, std::size_t row, std::uint8_t colour) { pixels[row * columns + column] = colour; }

    // Throws std::runtime_error with the file's name when it cannot.
    void save(const std::filesystem::path& file) const;

private:
    std::size_t columns;
    std::vector<Colour> palette;
    std::vector<std::uint8_t> pixels;
};

} // namespace quiverly::clips
