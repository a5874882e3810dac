#include "app/drawing/Fonts.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QStringList>
#include <array>
#include <stdexcept>
#include <string>

namespace orvanta {
namespace {

struct Font {
    const char* file;
    const char* family;
};

constexpr int kTextSize = 11;

constexpr std::array kFonts{
    Font{":/orvanta/fonts/Symbols.ttf", kSymbolFamily},
    Font{":/orvanta/fonts/Text-Regular.ttf", kTextFamily},
    Font{":/orvanta/fonts/Text-Medium.ttf", kTextFamily},
    Font{":/orvanta/fonts/Text-SemiBold.ttf", kTextFamily},
    Font{":/orvanta/fonts/Text-Bold.ttf", kTextFamily},
    Font{":/orvanta/fonts/Figures-Medium.ttf", kFigureFamily},
    Font{":/orvanta/fonts/Figures-SemiBold.ttf", kFigureFamily},
};

bool registerFonts() {
    for (const Font& font : kFonts) {
        const int id = QFontDatabase::addApplicationFont(font.file);
        if (!QFontDatabase::applicationFontFamilies(id).contains(font.family)) {
            throw std::runtime_error("The font file " + std::string(font.file) +
                                     " is not a usable font of the family \"" + font.family +
                                     "\".");
        }
    }
    QFont text(kTextFamily);
    text.setPixelSize(kTextSize);
    QGuiApplication::setFont(text);
    return true;
}

} // namespace

void loadFonts() {
    // Not known when it throws, so the next call tries again.
    [[maybe_unused]] static const bool areKnown = registerFonts();
}

} // namespace orvanta
