#pragma once

#include "core/platform/AudioObject.h"

namespace orvanta::pipewire {

/// Gives out ids of audio objects, none twice.
class ObjectIds {
public:
    AudioObjectID next() { return next_++; }

private:
    AudioObjectID next_ = kAudioObjectSystemObject + 1;
};

} // namespace orvanta::pipewire
