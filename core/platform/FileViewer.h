#pragma once

#include <filesystem>

namespace orvanta {

/// The desktop's file manager.
class FileViewer {
public:
    FileViewer() = default;
    FileViewer(const FileViewer&) = delete;
    FileViewer& operator=(const FileViewer&) = delete;
    virtual ~FileViewer() = default;

    /// activateFileViewerSelectingURLs: shows the file selected in its folder. Returns at once and
    /// tells nobody when it cannot.
    virtual void activateFileViewerSelecting(const std::filesystem::path& file) = 0;
};

} // namespace orvanta
