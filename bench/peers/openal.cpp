// Plays with OpenAL Soft the file that each line of standard input names, in place of the one before.

#include <AL/al.h>
#include <AL/alc.h>
#include <sndfile.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "told.h"

namespace {

void play(ALuint source, ALuint buffer, const std::string& path) {
    SF_INFO info = {};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr) return;
    std::vector<std::int16_t> samples(static_cast<std::size_t>(info.frames * info.channels));
    sf_readf_short(file, samples.data(), info.frames);
    sf_close(file);
    alSourceStop(source);
    alSourcei(source, AL_BUFFER, 0);
    alBufferData(buffer, info.channels == 2 ? AL_FORMAT_STEREO16 : AL_FORMAT_MONO16, samples.data(),
                 static_cast<ALsizei>(samples.size() * sizeof(std::int16_t)), info.samplerate);
    alSourcei(source, AL_BUFFER, static_cast<ALint>(buffer));
    alSourcePlay(source);
}

} // namespace

int main() {
    ALCdevice* device = alcOpenDevice(nullptr);
    ALCcontext* context = device != nullptr ? alcCreateContext(device, nullptr) : nullptr;
    if (context == nullptr || alcMakeContextCurrent(context) == ALC_FALSE) return 1;
    ALuint source = 0;
    ALuint buffer = 0;
    alGenSources(1, &source);
    alGenBuffers(1, &buffer);
    std::puts("ready");
    std::fflush(stdout);
    while (const auto path = toldFile()) play(source, buffer, *path);
    return 0;
}
