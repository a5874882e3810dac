#include "core/platform/FourCharCode.h"

namespace orvanta {

std::string fourCharText(FourCharCode code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const auto character = static_cast<char>((code >> static_cast<unsigned>(shift)) & 0xFFU);
        text += character >= ' ' && character <= '~' ? character : '.';
    }
    return text;
}

} // namespace orvanta
