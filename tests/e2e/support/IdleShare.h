#pragma once

namespace orvanta::test {

/// How much of its processors' time the machine had nothing to do, since this object was made:
/// tells whether what was measured meanwhile was measured on an idle machine.
class IdleShare {
public:
    IdleShare() : start_(now()) {}

    /// From 0 to 1; 0 where the system does not tell.
    [[nodiscard]] double value() const;

private:
    struct Times {
        double idle = 0;
        double all = 0;
    };

    static Times now();

    Times start_;
};

} // namespace orvanta::test
