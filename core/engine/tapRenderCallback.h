#pragma once

#include "core/engine/TapState.h"
#include "core/platform/AudioHardware.h"

namespace orvanta {

/// One IO cycle of one tap: copies the process's sound from `input` to `output` and runs the whole
/// chain in place there. In this order: copy, loudness normalisation, volume and mute, equaliser,
/// compressor, limiter, balance (buffer by buffer); then width and crossfeed; then metering, gate,
/// clearing of spare outputs. Two lists of unequal length or size are
/// processed as far as they pair; null buffers are passed over.
/// Samples that are no finite numbers are taken for silence.
///
/// Runs on an IO thread: takes no lock, allocates nothing, frees nothing. `clientData` may be null,
/// and then nothing happens. Always `noErr`.
OSStatus tapRenderCallback(const AudioBufferList* input, AudioBufferList* output,
                           const AudioCallbackRef* clientData) noexcept;

/// The same as an IOProc; `clientData` points to an `AudioCallbackRef`.
OSStatus tapIOProc(AudioObjectID device, const AudioTimeStamp* now, const AudioBufferList* input,
                   const AudioTimeStamp* inputTime, AudioBufferList* output,
                   const AudioTimeStamp* outputTime, void* clientData) noexcept;

/// The rest question of the same client data.
bool tapIsAtRest(const void* clientData) noexcept;

} // namespace orvanta
