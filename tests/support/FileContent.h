#pragma once

#include <filesystem>
#include <string>

namespace orvanta::test {

/// All bytes of a file. Throws std::runtime_error when it cannot be read.
std::string fileContent(const std::filesystem::path& path);

} // namespace orvanta::test
