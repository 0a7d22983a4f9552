#pragma once

#include <array>
#include <vector>

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

constexpr std::size_t spectrumBands = 40;
constexpr double spectrogramHop = 0.01; // seconds between two columns

// The power of one moment of a clip in bands that are equally wide to the ear, lowest first.
using Spectrum = std::array<double, spectrumBands>;

// Both channels together, one column every spectrogramHop from the start of the clip; a full-scale sine has a power of
// about 1 in its band.
std::vector<Spectrum> spectrogram(const Stereo& sound);

// The middle of a band in hertz.
double bandCentre(std::size_t band);

// A power in decibels, silence at -80.
double decibels(double power);

// How different two clips sound: the root mean square, over bands and time, of the difference of their spectra in dB,
// from the start of both to the end of the longer.
double spectralDistance(const std::vector<Spectrum>& one, const std::vector<Spectrum>& other);

} // namespace quiverly::clips
