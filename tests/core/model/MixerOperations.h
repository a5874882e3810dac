#pragma once

#include "tests/core/model/MixerWorld.h"

#include <rapidcheck.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace orvanta::test {

/// Something that happens to a mixer and its reference.
struct Operation {
    std::string text;
    std::function<void(MixerWorld&)> run;
};

/// One after the other. A type of its own because it shows one a line.
struct Operations {
    std::vector<Operation> list;
};

void showValue(const Operations& operations, std::ostream& stream);

/// Up to `longest` of any kind at the largest size.
[[nodiscard]] rc::Gen<Operations> anyOperations(int longest);

} // namespace orvanta::test
