#include "core/recording/RecordingFileName.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cstdint>

namespace orvanta {
namespace {

constexpr std::string_view kTrimmed = "- ";

std::string withoutDoubleDots(std::string_view text) {
    std::string kept;
    while (!text.empty()) {
        if (text.starts_with("..")) {
            text.remove_prefix(2);
        } else {
            kept += text.front();
            text.remove_prefix(1);
        }
    }
    return kept;
}

bool isKept(UChar32 character) {
    if (character == '-' || character == '_' || character == ' ')
        return true;
    constexpr std::uint32_t kAlphanumeric = U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK;
    return (U_GET_GC_MASK(character) & kAlphanumeric) != 0;
}

std::string withHyphensForOthers(std::string_view text) {
    const auto unicode = icu::UnicodeString::fromUTF8(icu::StringPiece(text));
    icu::UnicodeString made;
    for (std::int32_t at = 0; at < unicode.length(); at = unicode.moveIndex32(at, 1)) {
        const UChar32 character = unicode.char32At(at);
        made.append(isKept(character) ? character : UChar32{'-'});
    }
    std::string utf8;
    return made.toUTF8String(utf8);
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(kTrimmed);
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kTrimmed) - first + 1);
}

} // namespace

std::string cleanedForFileName(std::string_view appName) {
    return trimmed(withHyphensForOthers(withoutDoubleDots(appName)));
}

std::string recordingFileName(std::string_view appName, WallTime time, RecordingFormat format) {
    return fmt::format("{}_{:%Y-%m-%d_%H-%M-%S}.{}", cleanedForFileName(appName),
                       fmt::localtime(std::chrono::system_clock::to_time_t(time)),
                       fileExtension(format));
}

} // namespace orvanta
