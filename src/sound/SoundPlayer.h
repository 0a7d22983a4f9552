#pragma once

#include <filesystem>
#include <vector>

#include "platform/audio.h"
#include "platform/calendar.h"
#include "sound/SoundPack.h"

namespace quiverly {

// Answers a slap with one clip of the current pack.
//
// Packs that do not escalate draw a clip at random. Those that do move from the first clip towards the last with the
// number of slaps of the last 300 seconds. The volume is 0.45 + 1.2 x amplitude, at most 1. Only one clip sounds at a
// time: a new one cuts off the one before. A clip that cannot be opened is silent. Main thread only.
class SoundPlayer {
public:
    // Makes the pack current and looks its clips up in the resources. A clip that is playing goes on.
    void load(SoundPack pack);

    // Amplitudes are in g. A muted slap leaves no trace: it does not count toward escalation.
    void playSlap(double amplitude, bool muted);

    // Plays the test clip of the sexy pack, never more softly than for 0.35 g. The current pack stays current.
    void playHardwarePreview(double amplitude);

private:
    using Path = std::filesystem::path;

    const Path& escalatedFile();
    const Path& previewFile() const;
    void play(const Path& file, double amplitude);

    audio::PlayerHandle player;                 // of the clip started last
    std::vector<Path> files;                    // clips of `pack`, in natural order
    std::vector<calendar::TimePoint> slapTimes; // never cleared, so that a series outlives a change of pack
    SoundPack pack = SoundPack::sexy;
};

} // namespace quiverly
