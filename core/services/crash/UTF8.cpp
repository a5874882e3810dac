#include "core/services/crash/UTF8.h"

#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <cstdint>
#include <limits>

namespace orvanta::crash {

bool isUTF8(std::string_view bytes) {
    if (bytes.size() > std::numeric_limits<std::int32_t>::max())
        return false;
    std::int32_t length = 0;
    UErrorCode result = U_ZERO_ERROR;
    // Asks for the length only, for which all is looked at.
    u_strFromUTF8(nullptr, 0, &length, bytes.data(), static_cast<std::int32_t>(bytes.size()),
                  &result);
    return result == U_BUFFER_OVERFLOW_ERROR || U_SUCCESS(result);
}

std::string madeUTF8(std::string_view bytes) {
    std::string text;
    return icu::UnicodeString::fromUTF8(icu::StringPiece(bytes)).toUTF8String(text);
}

} // namespace orvanta::crash
