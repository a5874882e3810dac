#include "tests/e2e/support/IdleShare.h"

#include <fstream>
#include <string>

namespace orvanta::test {

IdleShare::Times IdleShare::now() {
    // "cpu  user nice system idle iowait …", in ticks of all processors together.
    std::ifstream stat("/proc/stat");
    std::string name;
    stat >> name;
    Times times;
    double ticks = 0;
    for (int field = 0; field < 8 && stat >> ticks; ++field) {
        times.all += ticks;
        if (field == 3 || field == 4)
            times.idle += ticks;
    }
    return times;
}

double IdleShare::value() const {
    const Times end = now();
    return end.all > start_.all ? (end.idle - start_.idle) / (end.all - start_.all) : 0;
}

} // namespace orvanta::test
