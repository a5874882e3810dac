#pragma once

#include <map>
#include <optional>
#include <string>

namespace orvanta::test {

/// Sets variables of this process's environment (an absent value removes one) and puts the old
/// ones back at the end of its life. Made while no other thread reads the environment.
class ScopedEnvironment {
public:
    using Variables = std::map<std::string, std::optional<std::string>>;

    explicit ScopedEnvironment(const Variables& variables);
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
    ~ScopedEnvironment();

private:
    Variables previous_;
};

} // namespace orvanta::test
