#pragma once

#include "core/platform/FileViewer.h"

#include <cstdio>

namespace orvanta::cli {

/// A tool without windows shows a file by its path: one line on standard output.
class PrintingFileViewer final : public FileViewer {
public:
    explicit PrintingFileViewer(std::FILE* output = stdout) : output_(output) {}

    void activateFileViewerSelecting(const std::filesystem::path& file) override {
        std::fprintf(output_, "%s\n", file.c_str());
    }

private:
    std::FILE* output_;
};

} // namespace orvanta::cli
