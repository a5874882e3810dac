#include "cli/StatusWords.h"

#include "core/platform/OSStatus.h"

#include <charconv>
#include <string_view>

namespace orvanta::cli {
namespace {

std::string_view words(OSStatus status) {
    switch (status) {
    case kAudioHardwareNotRunningError:
        return "the audio server or its session manager does not answer";
    case kAudioHardwareBadObjectError:
        return "the process has no audio any more";
    case kAudioHardwareBadDeviceError:
        return "there is no such device";
    case kAudioHardwareIllegalOperationError:
        return "the audio server does not allow it; the process may be tapped already";
    case kAudioHardwareUnspecifiedError:
        return "the audio server does not say why";
    default:
        return {};
    }
}

} // namespace

std::string withStatusInWords(const std::string& line) {
    const std::size_t space = line.rfind(' ');
    if (space == std::string::npos)
        return line;
    const std::string_view last = std::string_view(line).substr(space + 1);
    OSStatus status = noErr;
    const auto read = std::from_chars(last.data(), last.data() + last.size(), status);
    if (read.ec != std::errc() || read.ptr != last.data() + last.size())
        return line;
    const std::string_view meaning = words(status);
    return meaning.empty() ? line : line + " (" + std::string(meaning) + ")";
}

} // namespace orvanta::cli
