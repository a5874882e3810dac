#pragma once

#include <string>

namespace orvanta {

/// The desktop's programs for addresses: its browser, its mail program.
class URLOpener {
public:
    URLOpener() = default;
    URLOpener(const URLOpener&) = delete;
    URLOpener& operator=(const URLOpener&) = delete;
    virtual ~URLOpener() = default;

    /// NSWorkspace openURL:. False when it is known at once that nothing opens it.
    virtual bool open(const std::string& url) = 0;
};

} // namespace orvanta
