#include "platform/macos/mac_sound_player.h"

#import <AppKit/AppKit.h>

namespace orlix {

// A sound object plays once at a time, so one that is still sounding is overlapped by a copy, kept here until
// it has ended.
struct MacSoundPlayer::Copies {
    NSMutableArray<NSSound*>* sounding = [NSMutableArray array];
};

MacSoundPlayer::MacSoundPlayer() : copies_(std::make_unique<Copies>()) {}

MacSoundPlayer::~MacSoundPlayer() = default;

void MacSoundPlayer::play(const QString& name) {
    @autoreleasepool {
        NSSound* sound = [NSSound soundNamed:name.toNSString()];
        if (!sound) return;
        NSMutableArray<NSSound*>* sounding = copies_->sounding;
        for (NSUInteger index = sounding.count; index > 0; --index) {
            if (!sounding[index - 1].playing) [sounding removeObjectAtIndex:index - 1];
        }
        if (sound.playing) {
            sound = [sound copy];
            [sounding addObject:sound];
        }
        [sound play];
    }
}

}  // namespace orlix
