#pragma once

namespace orvanta {

/// The family of all other text.
inline constexpr const char* kTextFamily = "Orvanta Text";
/// The family of the symbols: in it, the text that `glyphOf` answers is drawn as the symbol.
inline constexpr const char* kSymbolFamily = "Framework7 Icons";
/// The family of read-outs, whose figures are all of one width.
inline constexpr const char* kFigureFamily = "Orvanta Figures";

/// Makes these families known to the toolkit and gives it the one for text, once; later calls do
/// nothing. Main thread, with a QGuiApplication. Throws std::runtime_error, which names the font
/// that cannot be used.
void loadFonts();

} // namespace orvanta
