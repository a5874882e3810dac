#pragma once

#include <string>

namespace orvanta {

/// What a build of the program says of itself.
struct BundleInfo {
    std::string shortVersion; ///< CFBundleShortVersionString, for people to read
    std::string version;      ///< CFBundleVersion, the build
};

} // namespace orvanta
