#include "clips/sheet/ClipPicture.h"

#include <algorithm>
#include <cmath>

#include <QColor>
#include <QPainter>

#include "clips/measure/Spectrogram.h"

namespace quiverly::clips {

namespace {

constexpr double pixelsPerSecond = 72;
constexpr int waveformHeight = 32;
constexpr double tallestPeak = 0.6; // of full scale, as tall as the waveform
constexpr int bandHeight = 2;       // pixels of a band of the spectrogram
constexpr double darkest = -70;     // dB, drawn in the first shade
constexpr double brightest = -15;   // dB, drawn in the last shade
constexpr int shades = 16;          // of the spectrogram
constexpr QRgb waveformColour = qRgb(242, 71, 158);

// From black over violet and orange to pale yellow, in even steps of lightness; 1 is the brightest.
QRgb heatColour(double heat) {
    const auto rising = [heat](double start, double end) {
        return static_cast<int>(255 * std::clamp((heat - start) / (end - start), 0.0, 1.0));
    };
    const double blue = std::sin(std::min(1.0, heat / 0.55) * 3.14) * 0.55 + std::max(0.0, heat - 0.75) * 2.6;
    return qRgb(rising(0.05, 0.7), rising(0.4, 1), static_cast<int>(255 * blue));
}

void drawWaveform(QImage& picture, const Stereo& sound) {
    constexpr int middle = waveformHeight / 2;
    constexpr double samplesPerPixel = sampleRate / pixelsPerSecond;
    QPainter painter(&picture);
    painter.setPen(QColor::fromRgb(waveformColour));
    for (int column = 0; column < picture.width(); ++column) {
        const auto first = static_cast<std::size_t>(column * samplesPerPixel);
        const auto last = std::min(first + static_cast<std::size_t>(samplesPerPixel), sound.left.size());
        double peak = 0;
        for (std::size_t index = first; index < last; ++index) {
            peak = std::max(peak, std::abs(sound.left[index] + sound.right[index]) / 2);
        }
        const int reach = static_cast<int>(std::min(1.0, peak / tallestPeak) * (middle - 1));
        painter.drawLine(column, middle - reach, column, middle + reach);
    }
}

void drawSpectrogram(QImage& picture, const std::vector<Spectrum>& spectra) {
    QPainter painter(&picture);
    for (int column = 0; column < picture.width(); ++column) {
        const auto moment = static_cast<std::size_t>(column / pixelsPerSecond / spectrogramHop);
        const Spectrum& spectrum = spectra[std::min(moment, spectra.size() - 1)];
        for (std::size_t band = 0; band < spectrumBands; ++band) {
            const double along = (decibels(spectrum[band]) - darkest) / (brightest - darkest);
            const int shade = static_cast<int>(std::clamp(along, 0.0, 1.0) * (shades - 1));
            const int top = picture.height() - bandHeight * static_cast<int>(band + 1);
            painter.fillRect(column, top, 1, bandHeight, QColor::fromRgb(clipPictureColours()[shade]));
        }
    }
}

} // namespace

QImage clipPicture(const Stereo& sound) {
    const int width = static_cast<int>(std::ceil(secondsOf(sound) * pixelsPerSecond));
    QImage picture(width, waveformHeight + bandHeight * static_cast<int>(spectrumBands), QImage::Format_RGB32);
    picture.fill(Qt::black);
    drawWaveform(picture, sound);
    drawSpectrogram(picture, spectrogram(sound));
    return picture;
}

const QList<QRgb>& clipPictureColours() {
    static const QList<QRgb> colours = [] {
        QList<QRgb> made;
        for (int shade = 0; shade < shades; ++shade) made << heatColour(shade / (shades - 1.0));
        return made << waveformColour;
    }();
    return colours;
}

} // namespace quiverly::clips
