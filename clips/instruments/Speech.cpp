#include "clips/instruments/Speech.h"

#include <stdexcept>
#include <vector>

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QtEndian>
#include <samplerate.h>

namespace quiverly::clips {

namespace {

constexpr int longestAnswer = 30'000; // milliseconds

// The program's WAV, always 16 bits mono: a header of 44 bytes, in it the sample rate, then the samples.
constexpr int headerBytes = 44;
constexpr int rateAt = 24;

QByteArray wavOf(const std::string& words, const Manner& manner) {
    const QString markup = QString("<prosody range='%1%'>%2</prosody>").arg(manner.range).arg(words.c_str());
    QProcess program;
    program.start("espeak-ng", {"--stdout", "-m", "-v", "en-gb", "-s", QString::number(manner.wordsPerMinute), "-p",
                                QString::number(manner.pitch), markup});
    if (!program.waitForFinished(longestAnswer) || program.exitCode() != 0) {
        throw std::runtime_error("espeak-ng: " + program.errorString().toStdString());
    }
    QByteArray wav = program.readAllStandardOutput();
    if (wav.size() <= headerBytes) throw std::runtime_error("espeak-ng did not speak.");
    return wav;
}

std::vector<float> resampled(const std::vector<float>& samples, double ratio) {
    std::vector<float> out(static_cast<std::size_t>(static_cast<double>(samples.size()) * ratio));
    SRC_DATA job{};
    job.data_in = samples.data();
    job.input_frames = static_cast<long>(samples.size());
    job.data_out = out.data();
    job.output_frames = static_cast<long>(out.size());
    job.src_ratio = ratio;
    if (const int error = src_simple(&job, SRC_SINC_MEDIUM_QUALITY, 1); error != 0) {
        throw std::runtime_error(src_strerror(error));
    }
    out.resize(static_cast<std::size_t>(job.output_frames_gen));
    return out;
}

} // namespace

Signal spoken(const std::string& words, const Manner& manner) {
    const QByteArray wav = wavOf(words, manner);
    std::vector<float> samples(static_cast<std::size_t>(wav.size() - headerBytes) / sizeof(qint16));
    for (std::size_t index = 0; index < samples.size(); ++index) {
        samples[index] = qFromLittleEndian<qint16>(wav.constData() + headerBytes + index * sizeof(qint16));
    }
    samples = resampled(samples, sampleRate / qFromLittleEndian<quint32>(wav.constData() + rateAt));
    return normalised(Signal(samples.begin(), samples.end()));
}

} // namespace quiverly::clips
