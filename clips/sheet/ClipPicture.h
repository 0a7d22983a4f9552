#pragma once

#include <QImage>
#include <QList>
#include <QRgb>

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A clip drawn small: its waveform above its spectrogram, which runs from 80 Hz at the bottom to 14 kHz at the top in
// bands that are equally wide to the ear. All clips are drawn to one scale and in these colours.
QImage clipPicture(const Stereo& sound);
const QList<QRgb>& clipPictureColours();

} // namespace quiverly::clips
