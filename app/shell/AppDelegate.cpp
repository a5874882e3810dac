#include "app/shell/AppDelegate.h"

#include "app/shell/WindowNames.h"

#include <algorithm>

namespace orvanta {
namespace {

bool isNamedWindow(std::string_view title) {
    return std::ranges::any_of(kWindowNames,
                               [&](const WindowName& name) { return name.title == title; });
}

} // namespace

void AppDelegate::applicationDidFinishLaunching() {
    mainRunLoop_.postAfter(sweepDelay, [&windows = windows_] {
        for (const auto& title : windows.titles()) {
            if (isNamedWindow(title))
                windows.close(title);
        }
    });
}

} // namespace orvanta
