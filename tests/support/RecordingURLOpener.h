#pragma once

#include "core/platform/URLOpener.h"

#include <string>
#include <vector>

namespace orvanta::test {

/// Keeps the addresses that it was to open, in order.
class RecordingURLOpener final : public URLOpener {
public:
    std::vector<std::string> opened;

    bool open(const std::string& url) override {
        opened.push_back(url);
        return true;
    }
};

} // namespace orvanta::test
