#pragma once

#include "core/platform/URLOpener.h"

namespace orvanta {

/// Opens pages and letters (https:, http: and mailto:) with the user's own programs. Addresses of
/// other kinds are refused: what comes from a feed must not start anything else. Needs Qt's
/// application object, one with windows.
class DesktopURLOpener final : public URLOpener {
public:
    bool open(const std::string& url) override;
};

} // namespace orvanta
