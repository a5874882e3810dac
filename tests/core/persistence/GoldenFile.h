#pragma once

#include "tests/support/FileContent.h"

#include <filesystem>
#include <string>

namespace orvanta::test {

/// The bytes that a record is stored as, of this version and of every later one.
inline std::string golden(const char* name) {
    return fileContent(std::filesystem::path(ORVANTA_GOLDEN_FOLDER) / name);
}

} // namespace orvanta::test
