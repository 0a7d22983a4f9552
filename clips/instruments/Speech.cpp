#include "clips/instruments/Speech.h"

#include <sndfile.hh>

#include <vector>

#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <samplerate.h>

namespace quiverly::clips {

namespace {

constexpr int longestWait = 30'000; // milliseconds

using Samples = std::vector<float>;

tl::expected<void, std::string> speakIntoFile(const QString& file, const std::string& words, const SpeechStyle& style) {
    const QString markup = QString("<prosody range='%1%'>%2</prosody>").arg(style.range).arg(words.c_str());
    QProcess program;
    program.start("espeak-ng", {"-w", file, "-m", "-v", "en-gb", "-s", QString::number(style.wordsPerMinute), "-p",
                                QString::number(style.pitch), markup});
    if (!program.waitForFinished(longestWait)) {
        return tl::unexpected("espeak-ng: " + program.errorString().toStdString());
    }
    if (program.exitStatus() != QProcess::NormalExit || program.exitCode() != 0) {
        return tl::unexpected("espeak-ng failed: " + program.readAllStandardError().trimmed().toStdString());
    }
    return {};
}

tl::expected<Samples, std::string> resampled(const Samples& samples, double ratio) {
    Samples out(static_cast<std::size_t>(static_cast<double>(samples.size()) * ratio));
    SRC_DATA job{};
    job.data_in = samples.data();
    job.input_frames = static_cast<long>(samples.size());
    job.data_out = out.data();
    job.output_frames = static_cast<long>(out.size());
    job.src_ratio = ratio;
    if (const int error = src_simple(&job, SRC_SINC_MEDIUM_QUALITY, 1); error != 0) {
        return tl::unexpected<std::string>(src_strerror(error));
    }
    out.resize(static_cast<std::size_t>(job.output_frames_gen));
    return out;
}

tl::expected<Samples, std::string> readMono(const std::string& file) {
    SndfileHandle in(file);
    if (!in) return tl::unexpected<std::string>(in.strError());
    if (in.channels() != 1 || in.frames() == 0) return tl::unexpected<std::string>("espeak-ng did not speak.");
    Samples samples(static_cast<std::size_t>(in.frames()));
    samples.resize(static_cast<std::size_t>(in.readf(samples.data(), in.frames())));
    return resampled(samples, sampleRate / in.samplerate());
}

} // namespace

tl::expected<Signal, std::string> spoken(const std::string& words, const SpeechStyle& style) {
    const QTemporaryDir folder;
    const QString file = folder.filePath("spoken.wav");
    return speakIntoFile(file, words, style)
        .and_then([&] { return readMono(file.toStdString()); })
        .map([](const Samples& samples) { return normalised(Signal(samples.begin(), samples.end())); });
}

} // namespace quiverly::clips
