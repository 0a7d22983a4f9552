#include "clips/sheet/ContactSheet.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>
#include <stdexcept>

#include "clips/Mp3.h"
#include "clips/PackRecipe.h"
#include "clips/measure/Spectrogram.h"
#include "clips/measure/Strength.h"
#include "clips/sheet/Picture.h"

namespace quiverly::clips {

namespace {

constexpr double pixelsPerSecond = 90; // the same for every clip, so that their lengths can be compared
constexpr std::size_t waveHeight = 36;
constexpr double tallest = 0.6;             // of full scale, filling the height of the waveform
constexpr std::size_t bandHeight = 2;       // pixels of each band of the spectrogram
constexpr double quietest = -70;            // dB, drawn black
constexpr double loudest = -15;             // dB, drawn in the brightest colour
constexpr std::uint8_t shades = 32;         // of the spectrogram
constexpr std::uint8_t waveColour = shades; // the palette's last

// From black over violet and orange to pale yellow, even steps of lightness; then the waveform's pink.
std::vector<Picture::Colour> palette() {
    std::vector<Picture::Colour> colours;
    for (int shade = 0; shade < shades; ++shade) {
        const double along = static_cast<double>(shade) / (shades - 1);
        const auto channel = [along](double start, double end) {
            return static_cast<std::uint8_t>(255 * std::clamp((along - start) / (end - start), 0.0, 1.0));
        };
        const double blue = std::sin(std::min(1.0, along / 0.55) * 3.14) * 0.55 + std::max(0.0, along - 0.75) * 2.6;
        colours.push_back({channel(0.05, 0.7), channel(0.4, 1.0), static_cast<std::uint8_t>(255 * blue)});
    }
    colours.push_back({242, 71, 158});
    return colours;
}

void drawWave(Picture& picture, const Stereo& sound) {
    constexpr std::size_t middle = waveHeight / 2;
    const double samplesPerPixel = sampleRate / pixelsPerSecond;
    for (std::size_t column = 0; column < picture.width(); ++column) {
        const auto first = static_cast<std::size_t>(static_cast<double>(column) * samplesPerPixel);
        const auto last = std::min(first + static_cast<std::size_t>(samplesPerPixel), sound.left.size());
        double peak = 0;
        for (std::size_t index = first; index < last; ++index) {
            peak = std::max(peak, std::abs(sound.left[index] + sound.right[index]) / 2);
        }
        const auto reach = static_cast<std::size_t>(std::min(1.0, peak / tallest) * (middle - 1));
        for (std::size_t row = middle - reach; row <= middle + reach; ++row) picture.set(column, row, waveColour);
    }
}

void drawSpectrogram(Picture& picture, const std::vector<Spectrum>& columns) {
    for (std::size_t column = 0; column < picture.width(); ++column) {
        const double seconds = static_cast<double>(column) / pixelsPerSecond;
        const auto moment = std::min(static_cast<std::size_t>(seconds / spectrogramHop), columns.size() - 1);
        for (std::size_t row = 0; row < picture.height() - waveHeight; ++row) {
            const std::size_t band = spectrumBands - 1 - row / bandHeight;
            const double along = (decibels(columns[moment][band]) - quietest) / (loudest - quietest);
            const auto shade = static_cast<std::uint8_t>(std::clamp(along, 0.0, 1.0) * (shades - 1));
            picture.set(column, waveHeight + row, shade);
        }
    }
}

Picture drawn(const Stereo& sound) {
    const double seconds = static_cast<double>(sound.left.size()) / sampleRate;
    Picture picture(static_cast<std::size_t>(std::ceil(seconds * pixelsPerSecond)),
                    waveHeight + bandHeight * spectrumBands, palette());
    drawWave(picture, sound);
    drawSpectrogram(picture, spectrogram(sound));
    return picture;
}

std::string row(const ClipRecipe& clip, const std::filesystem::path& file, const std::filesystem::path& picture,
                const Strength& strength) {
    std::ostringstream text;
    text << std::fixed << "| " << file.stem().string() << " | " << clip.title << " | ![](" << picture.generic_string()
         << ") | " << std::setprecision(2) << strength.seconds << " s | " << std::setprecision(1) << strength.loudness
         << " LUFS | " << std::setprecision(0) << strength.brightness << " Hz | " << strength.density << " | "
         << std::setprecision(1) << strength.range << " | " << std::setprecision(2) << strength.points() << " |\n";
    return text.str();
}

} // namespace

std::string contactSheet(const std::filesystem::path& audio, const std::filesystem::path& folder) {
    std::string text;
    for (const PackRecipe& recipe : allPackRecipes()) {
        std::filesystem::create_directories(folder / recipe.pack.folder());
        text +=
            std::string("\n### ") + recipe.pack.title() +
            "\n\n| | Clip | Waveform and spectrogram | Length | Loudness | Brightness | Density | Range | Strength |\n"
            "|--:|---|---|--:|--:|--:|--:|--:|--:|\n";
        for (std::size_t index = 0; index < recipe.clips.size(); ++index) {
            const std::filesystem::path file = recipe.fileOf(index);
            const std::filesystem::path picture = std::filesystem::path(file).replace_extension("png");
            const auto sound = readMp3(audio / file);
            if (!sound) throw std::runtime_error(sound.error());
            drawn(*sound).save(folder / picture);
            text += row(recipe.clips[index], file, folder.filename() / picture, strengthOf(*sound));
        }
    }
    return text;
}

} // namespace quiverly::clips
