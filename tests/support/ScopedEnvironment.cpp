#include "tests/support/ScopedEnvironment.h"

#include <cstdlib>

namespace orvanta::test {

namespace {

void apply(const std::string& name, const std::optional<std::string>& value) {
    if (value)
        setenv(name.c_str(), value->c_str(), 1);
    else
        unsetenv(name.c_str());
}

} // namespace

ScopedEnvironment::ScopedEnvironment(const Variables& variables) {
    for (const auto& [name, value] : variables) {
        const char* old = std::getenv(name.c_str());
        previous_[name] = old == nullptr ? std::nullopt : std::optional<std::string>(old);
        apply(name, value);
    }
}

ScopedEnvironment::~ScopedEnvironment() {
    for (const auto& [name, value] : previous_)
        apply(name, value);
}

} // namespace orvanta::test
