#pragma once

#include "core/platform/FileViewer.h"

#include <vector>

namespace orvanta::test {

/// Keeps the files that it was to show, in order.
class RecordingFileViewer final : public FileViewer {
public:
    std::vector<std::filesystem::path> shown;

    void activateFileViewerSelecting(const std::filesystem::path& file) override {
        shown.push_back(file);
    }
};

} // namespace orvanta::test
