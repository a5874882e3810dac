#pragma once

#include "app/update/Appcast.h"

#include <filesystem>
#include <optional>
#include <string>

namespace orvanta {

/// What there is to say of updates.
struct UpdateNews {
    enum class Kind { none, upToDate, offered, downloading, downloaded, failed };

    Kind kind = Kind::none;
    /// For people to read, as plain text: a feed has its share in it. Empty when there is nothing.
    std::string sentence{};
    /// The version it is about. There also after a download that failed, which may be tried again.
    std::optional<AppcastItem> offer = std::nullopt;
    /// The signed file, once it is downloaded.
    std::filesystem::path file{};

    friend bool operator==(const UpdateNews&, const UpdateNews&) = default;
};

} // namespace orvanta
