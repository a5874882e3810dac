#include "platform/media/Libav.h"

#include <array>

namespace orvanta::media {

std::string libavErrorInWords(int error) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> words{};
    // Knows a sentence for every number, if need be one that repeats the number.
    av_strerror(error, words.data(), words.size());
    return words.data();
}

} // namespace orvanta::media
