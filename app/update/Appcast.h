#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvanta {

/// A version that a feed offers.
struct AppcastItem {
    /// What versions are compared by.
    std::string version;
    /// For people to read; the same as `version` where the feed has no other.
    std::string shortVersion;
    /// Where people read about it and get it by hand; may be empty.
    std::string page;
    /// The signed file; empty where there is only a page.
    std::string file;
    /// Of the file, in bytes; 0 where the feed does not say.
    std::int64_t fileSize = 0;
    /// Of the file, in Base64.
    std::string signature;

    friend bool operator==(const AppcastItem&, const AppcastItem&) = default;
};

/// The versions in a feed for this system, in the feed's order: an RSS document whose items carry a
/// version, a signature and a file ("appcast"). Items of a channel of their own, such as previews,
/// are left out, and so is what has no version, or neither a page nor a signed file for this system
/// that can be got by HTTPS. Of several such files the first counts. Nothing when the document is
/// malformed.
[[nodiscard]] std::optional<std::vector<AppcastItem>> readAppcast(std::string_view document);

/// The newest of them if it is newer than `version`; of equals the first.
[[nodiscard]] std::optional<AppcastItem> updateFor(std::string_view version,
                                                   const std::vector<AppcastItem>& items);

} // namespace orvanta
