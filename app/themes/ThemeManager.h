#pragma once

#include "app/themes/ThemeChoice.h"
#include "core/platform/UserDefaults.h"
#include "core/publishing/Published.h"

#include <string_view>

namespace orvanta {

/// Which theme all views wear. The program has one, and every view asks it for its colours. Belongs
/// to the main thread.
class ThemeManager {
public:
    /// Where the choice is stored, as its raw value.
    static constexpr std::string_view defaultsKey = "com.meridane.orvanta.themeChoice";

    /// Takes up the stored choice; classic where there is none that it knows. `defaults` must
    /// outlive it.
    explicit ThemeManager(UserDefaults& defaults);

    /// Told before the choice changes.
    ObjectWillChange objectWillChange;

    /// Stored at each assignment.
    Published<ThemeChoice> choice;

    [[nodiscard]] const ThemePalette& palette() const noexcept { return paletteOf(choice.get()); }

    void chooseNext() { choice.set(nextAfter(choice.get())); }

private:
    UserDefaults& defaults_;
};

} // namespace orvanta
