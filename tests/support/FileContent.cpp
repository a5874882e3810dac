#include "tests/support/FileContent.h"

#include <fstream>
#include <stdexcept>

namespace orvanta::test {

std::string fileContent(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string content(std::filesystem::file_size(path), '\0');
    if (!file.read(content.data(), static_cast<std::streamsize>(content.size())))
        throw std::runtime_error("cannot read " + path.string());
    return content;
}

} // namespace orvanta::test
