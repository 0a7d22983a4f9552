#pragma once

// The part of AVFoundation that Quiverly uses, declared after Apple's published documentation.

#include <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface AVAudioPlayer : NSObject
@property float volume;
- (nullable instancetype)initWithContentsOfURL:(NSURL*)url error:(NSError* _Nullable* _Nullable)outError;
- (BOOL)prepareToPlay;
- (BOOL)play;
@end

NS_ASSUME_NONNULL_END
