#include "tests/support/TemporaryDirectory.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace orvanta::test {

namespace fs = std::filesystem;

namespace {

const std::string prefix = "orvanta-test-";

bool ownerIsGone(const std::string& directoryName) {
    const int owner = std::atoi(directoryName.c_str() + prefix.size());
    return owner > 0 && kill(owner, 0) != 0 && errno == ESRCH;
}

void removeWhatDeadOwnersLeft() {
    std::error_code ignored;
    for (const fs::directory_entry& entry :
         fs::directory_iterator(fs::temp_directory_path(), ignored)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(prefix) && ownerIsGone(name))
            fs::remove_all(entry.path(), ignored);
    }
}

} // namespace

TemporaryDirectory::TemporaryDirectory() {
    removeWhatDeadOwnersLeft();
    // Short, because the paths of sockets below it must not be longer than 107 characters.
    std::string pattern =
        (fs::temp_directory_path() / (prefix + std::to_string(getpid()) + "-XXXXXX")).string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("cannot make a temporary directory " + pattern);
    path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

} // namespace orvanta::test
