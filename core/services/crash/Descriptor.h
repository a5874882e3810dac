#pragma once

#include <unistd.h>
#include <utility>

namespace orvanta::crash {

/// Closes a file when it goes.
class Descriptor {
public:
    /// A negative number stands for none.
    explicit Descriptor(int number) noexcept : number_(number) {}

    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    ~Descriptor() {
        if (number_ >= 0)
            ::close(number_);
    }

    [[nodiscard]] int number() const noexcept { return number_; }

    [[nodiscard]] int release() noexcept { return std::exchange(number_, -1); }

private:
    int number_;
};

} // namespace orvanta::crash
