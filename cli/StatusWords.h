#pragma once

#include <string>

namespace orvanta::cli {

/// A log line that ends in a status of the audio system gets the meaning of that number added in
/// brackets, where it is known; others stay as they are.
std::string withStatusInWords(const std::string& line);

} // namespace orvanta::cli
