#include "core/services/crash/MailURL.h"

#include <fmt/format.h>

namespace orvanta::crash {
namespace {

/// What RFC 3986 calls unreserved: never has another meaning, anywhere in a URL.
bool isUnreserved(char byte) {
    const bool isLetter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
    const bool isDigit = byte >= '0' && byte <= '9';
    return isLetter || isDigit || byte == '-' || byte == '.' || byte == '_' || byte == '~';
}

std::string percentEncoded(std::string_view text) {
    std::string encoded;
    for (const char byte : text)
        if (isUnreserved(byte))
            encoded += byte;
        else
            encoded += fmt::format("%{:02X}", static_cast<unsigned char>(byte));
    return encoded;
}

} // namespace

std::string mailURL(std::string_view address, std::string_view subject, std::string_view body) {
    return fmt::format("mailto:{}?subject={}&body={}", address, percentEncoded(subject),
                       percentEncoded(body));
}

} // namespace orvanta::crash
