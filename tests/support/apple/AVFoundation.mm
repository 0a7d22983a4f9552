#include <AVFoundation/AVFoundation.h>

#include <filesystem>
#include <string>

#include "support/apple/AppleServices.h"
#include "support/apple/AppleState.h"

NS_ASSUME_NONNULL_BEGIN

namespace {

void tell(const std::string& call) {
    quiverly::AppleServices::current().calls.push_back(call);
}

} // namespace

@implementation AVAudioPlayer
- (nullable instancetype)initWithContentsOfURL:(NSURL*)url error:(NSError* _Nullable* _Nullable)outError {
    const std::filesystem::path file = url.fileSystemRepresentation;
    if (!std::filesystem::exists(file)) return nil;
    tell("open " + file.filename().string());
    return self;
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
