#pragma once

#include <unistd.h>

namespace orvanta {

/// Closes a file when it goes.
class Descriptor {
public:
    /// A negative number stands for none.
    explicit Descriptor(int number) : number_(number) {}

    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    ~Descriptor() {
        if (number_ >= 0)
            close(number_);
    }

    [[nodiscard]] int number() const { return number_; }

private:
    const int number_;
};

} // namespace orvanta
