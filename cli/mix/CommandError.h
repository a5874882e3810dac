#pragma once

#include <stdexcept>

namespace orvanta::cli {

/// Why a command cannot be done: one sentence, for people.
class CommandError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace orvanta::cli
