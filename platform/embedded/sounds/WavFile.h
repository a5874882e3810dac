#pragma once

#include "platform/embedded/sounds/BasicSounds.h"

#include <string>

namespace orvanta::embedded {

/// The sound of a file of any format that libsndfile reads, read into memory here and now. Empty
/// when the file cannot be read or holds nothing. At the rate of the file its samples come through
/// untouched; at another they lie on a cubic (Catmull-Rom) through the four neighbours, without a
/// filter, so what lies above half the device's rate folds back.
Sound wavFile(const std::string& path, AtEnd atEnd = AtEnd::startAgain);

} // namespace orvanta::embedded
