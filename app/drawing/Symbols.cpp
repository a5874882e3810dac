#include "app/drawing/Symbols.h"

#include <algorithm>
#include <array>

namespace orvanta {
namespace {

/// By name. Where the font has no glyph of the same meaning, the nearest one.
constexpr std::array kSymbols{
    Symbol{"app.fill", "app_fill"},
    Symbol{"arrow.counterclockwise", "arrow_counterclockwise"},
    Symbol{"arrow.left.and.right", "arrow_left_right"},
    Symbol{"arrow.right", "arrow_right"},
    Symbol{"arrow.triangle.2.circlepath", "arrow_2_circlepath"},
    Symbol{"arrow.triangle.branch", "arrow_branch"},
    Symbol{"bolt.circle", "bolt_circle"},
    Symbol{"bolt.circle.fill", "bolt_circle_fill"},
    Symbol{"book.fill", "book_fill"},
    Symbol{"bubble.left.fill", "bubble_left_fill"},
    Symbol{"checkmark", "checkmark"},
    Symbol{"checkmark.circle.fill", "checkmark_circle_fill"},
    Symbol{"chevron.up.chevron.down", "chevron_up_chevron_down"},
    Symbol{"circle", "circle"},
    Symbol{"command", "command"},
    Symbol{"display", "tv_fill"},
    Symbol{"envelope.badge.fill", "envelope_badge_fill"},
    Symbol{"gamecontroller.fill", "gamecontroller_fill"},
    Symbol{"globe", "globe"},
    Symbol{"hifispeaker.fill", "hifispeaker_fill"},
    Symbol{"lock.shield.fill", "lock_shield_fill"},
    Symbol{"menubar.arrow.up.rectangle", "rectangle_dock"},
    Symbol{"mic.fill", "mic_fill"},
    Symbol{"music.note", "music_note_2"},
    Symbol{"paintbrush.fill", "paintbrush_fill"},
    Symbol{"person.2.fill", "person_2_fill"},
    Symbol{"record.circle", "smallcircle_fill_circle"},
    Symbol{"record.circle.fill", "smallcircle_fill_circle_fill"},
    Symbol{"slider.horizontal.3", "slider_horizontal_3"},
    Symbol{"slider.horizontal.below.square.and.square.filled", "slider_horizontal_below_rectangle"},
    Symbol{"sparkles", "sparkles"},
    Symbol{"speaker.slash", "speaker_slash"},
    Symbol{"speaker.slash.fill", "speaker_slash_fill"},
    Symbol{"speaker.wave.1.fill", "speaker_1_fill"},
    Symbol{"speaker.wave.2.fill", "speaker_2_fill"},
    Symbol{"speaker.wave.3.fill", "speaker_3_fill"},
    Symbol{"stop.circle.fill", "stop_circle_fill"},
    Symbol{"waveform.badge.minus", "waveform_path_badge_minus"},
    Symbol{"waveform.circle.fill", "waveform_circle_fill"},
    Symbol{"waveform.path", "waveform_path"},
    Symbol{"xmark", "xmark"},
};
static_assert(std::ranges::is_sorted(kSymbols, {}, &Symbol::name));

} // namespace

std::span<const Symbol> symbols() noexcept {
    return kSymbols;
}

std::string_view glyphOf(std::string_view name) noexcept {
    const auto* const found = std::ranges::lower_bound(kSymbols, name, {}, &Symbol::name);
    return found != kSymbols.end() && found->name == name ? found->glyph : std::string_view();
}

} // namespace orvanta
