#include "cli/PrintingFileViewer.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>

namespace orvanta::cli {
namespace {

struct Closing {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

TEST(PrintingFileViewer, PrintsEachPathOnALineOfItsOwn) {
    const std::unique_ptr<std::FILE, Closing> output(std::tmpfile());
    ASSERT_TRUE(output);
    PrintingFileViewer viewer(output.get());
    viewer.activateFileViewerSelecting("/home/user/Music/100 %s.wav");
    viewer.activateFileViewerSelecting("/home/user/Music/M\xC3\xBCller.m4a");
    std::rewind(output.get());
    std::array<char, 256> text{};
    const std::size_t length = std::fread(text.data(), 1, text.size(), output.get());
    EXPECT_EQ(std::string(text.data(), length),
              "/home/user/Music/100 %s.wav\n/home/user/Music/M\xC3\xBCller.m4a\n");
}

} // namespace
} // namespace orvanta::cli
