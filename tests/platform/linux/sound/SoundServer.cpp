#include "platform/linux/sound/SoundServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "support/Environment.h"
#include "support/Files.h"
#include "support/Waiting.h"

namespace quiverly {

SoundServer::SoundServer() {
    for (const char* variable : {"PULSE_SERVER", "PULSE_SINK", "PULSE_RUNTIME_PATH", "PULSE_COOKIE", "DISPLAY"}) {
        setVariable(variable, nullptr);
    }
    setVariable("XDG_CONFIG_HOME", (folder() / "config").c_str()); // the server's cookie
    setVariable("PULSE_STATE_PATH", (folder() / "state").c_str());
    const auto client = runtime.addFile("client.conf", "autospawn = no\n"); // who finds no server starts none
    setVariable("PULSE_CLIENTCONFIG", client.c_str());
}

void SoundServer::start() {
    server.emplace(std::vector<std::string>{QUIVERLY_SOUND_PROGRAMS "/sound-server"}, folder() / "server.out",
                   folder() / "server.log");
    waitUntil([&] { return answers() || !server->isRunning(); });
    ASSERT_TRUE(server->isRunning()) << bytesOf(folder() / "server.log");

    recorder.emplace(std::vector<std::string>{QUIVERLY_SOUND_PROGRAMS "/sound-recorder"}, folder() / "recording",
                     folder() / "recorder.log");
    waitUntil([&] { return !control("list short source-outputs").empty() || !recorder->isRunning(); });
    control("suspend-sink test 1"); // resumed it takes up the recorder's short pieces, in place of the first of 2 s
    control("suspend-sink test 0");
    waitUntil([&] { return recordedFrames() > 0 || !recorder->isRunning(); });
    ASSERT_TRUE(recorder->isRunning()) << bytesOf(folder() / "recorder.log");
}

void SoundServer::kill() {
    server->kill();
    recorder->kill();
}

std::size_t SoundServer::recordedFrames() const {
    std::error_code missing;
    const std::uintmax_t size = std::filesystem::file_size(folder() / "recording", missing);
    return missing ? 0 : size / sizeof(Recording::Frame);
}

Recording SoundServer::recordingSince(std::size_t frame) const {
    const std::size_t end = recordedFrames();
    Recording recording{.frames = std::vector<Recording::Frame>(end - std::min(frame, end))};
    std::ifstream stream(folder() / "recording", std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(frame * sizeof(Recording::Frame)));
    stream.read(reinterpret_cast<char*>(recording.frames.data()),
                static_cast<std::streamsize>(recording.frames.size() * sizeof(Recording::Frame)));
    return recording;
}

void SoundServer::listen(double seconds) const {
    const std::size_t end = recordedFrames() + static_cast<std::size_t>(seconds * Recording::rate);
    waitUntil([&] { return recordedFrames() >= end; });
}

std::string SoundServer::control(const std::string& arguments) const {
    const auto answer = folder() / "answer";
    const std::string command = "pactl " + arguments;
    EXPECT_EQ(ChildProcess({"sh", "-c", command}, answer, folder() / "control.log").wait(), 0)
        << command << '\n'
        << bytesOf(folder() / "control.log");
    return bytesOf(answer);
}

bool SoundServer::answers() const {
    return ChildProcess({"pactl", "info"}, folder() / "answer", folder() / "control.log").wait() == 0;
}

std::size_t SoundServer::streams() const {
    const std::string list = control("list short sink-inputs");
    return static_cast<std::size_t>(std::ranges::count(list, '\n'));
}

bool SoundServer::hasClient(const std::string& name) const {
    return control("list clients").find("application.name = \"" + name + '"') != std::string::npos;
}

} // namespace quiverly
