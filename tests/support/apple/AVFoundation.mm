#include <AVFoundation/AVFoundation.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "support/apple/AppleServices.h"
#include "support/apple/AppleState.h"

NS_ASSUME_NONNULL_BEGIN

namespace {

void tell(const std::string& call) {
    quiverly::AppleServices::current().calls.push_back(call);
}

// With what the encoder says of an MP3, or with its first frame.
bool beginsLikeAClip(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::array<char, 3> begin{};
    stream.read(begin.data(), begin.size());
    return std::string_view(begin.data(), begin.size()) == "ID3" || (begin[0] == '\xFF' && (begin[1] & 0xE0) == 0xE0);
}

} // namespace

@implementation AVAudioPlayer
- (nullable instancetype)initWithContentsOfURL:(NSURL*)url error:(NSError* _Nullable* _Nullable)outError {
    const std::filesystem::path file = url.fileSystemRepresentation;
    if (!beginsLikeAClip(file)) return nil;
    tell("open " + file.filename().string());
    return self;
}
- (void)dealloc {
    tell("silence");
}
- (float)volume {
    return stateOf<float>(self);
}
- (void)setVolume:(float)volume {
    stateOf<float>(self) = volume;
    tell("volume " + std::to_string(volume));
}
- (BOOL)prepareToPlay {
    tell("prepare");
    return YES;
}
- (BOOL)play {
    tell("play");
    return YES;
}
@end

NS_ASSUME_NONNULL_END
