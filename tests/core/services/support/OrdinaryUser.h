#pragma once

#include <filesystem>
#include <stdexcept>
#include <unistd.h>

namespace orvanta::test {

/// For as long as this object lives the process is one whom permissions hold off, also where the
/// tests run as root, and the folder is its own.
class OrdinaryUser {
public:
    explicit OrdinaryUser(const std::filesystem::path& folder) : wasRoot_(geteuid() == 0) {
        if (wasRoot_ && (chown(folder.c_str(), kNobody, kNobody) != 0 || seteuid(kNobody) != 0))
            throw std::runtime_error("cannot become an ordinary user");
    }

    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

    ~OrdinaryUser() {
        if (wasRoot_ && seteuid(0) != 0)
            std::abort();
    }

private:
    static constexpr uid_t kNobody = 65534;

    const bool wasRoot_;
};

} // namespace orvanta::test
