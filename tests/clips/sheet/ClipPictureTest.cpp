#include "clips/sheet/ClipPicture.h"

#include <gtest/gtest.h>

#include "clips/measure/Spectrogram.h"
#include "clips/signals.h"
#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {
namespace {

const QRgb waveform = clipPictureColours().last();
const QRgb brightest = clipPictureColours()[clipPictureColours().size() - 2];

QImage pictureOf(const Signal& signal) {
    return clipPicture(inBothChannels(signal));
}

int countIn(const QImage& picture, int column, QRgb colour) {
    int found = 0;
    for (int row = 0; row < picture.height(); ++row) found += picture.pixel(column, row) == colour ? 1 : 0;
    return found;
}

TEST(ClipPictureTest, IsAsWideAsTheClipIsLong) {
    EXPECT_EQ(pictureOf(sine(1, 440)).width(), 2 * pictureOf(sine(0.5, 440)).width());
    EXPECT_EQ(pictureOf(sine(1, 440)).height(), pictureOf(sine(0.5, 440)).height());
}

TEST(ClipPictureTest, TheWaveformIsAsTallAsTheSoundIsLoud) {
    const QImage picture = pictureOf(faded(sine(1, 440), {{0.4, 0.1}, {0.6, 0.5}}));
    const int soft = countIn(picture, 10, waveform);
    const int loud = countIn(picture, picture.width() - 10, waveform);
    EXPECT_GT(soft, 1);
    EXPECT_GT(loud, 4 * soft);
    EXPECT_EQ(countIn(pictureOf(Signal(samplesIn(1))), 10, waveform), 1);
}

TEST(ClipPictureTest, AToneIsBrightInItsBandAndTheHigherTheFurtherUp) {
    const int middle = 36; // column
    int rowBefore = pictureOf(sine(1, 440)).height();
    for (const std::size_t band : {std::size_t{2}, std::size_t{20}, std::size_t{37}}) {
        const QImage picture = pictureOf(sine(1, bandCentre(band)));
        const int row = picture.height() - 2 * static_cast<int>(band) - 1;
        EXPECT_EQ(picture.pixel(middle, row), brightest) << band;
        EXPECT_LT(row, rowBefore);
        rowBefore = row;
    }
}

} // namespace
} // namespace quiverly::clips
