#include "app/demo/DemoProgram.h"

#include "platform/embedded/sounds/GameLike.h"
#include "platform/embedded/sounds/MusicLike.h"
#include "platform/embedded/sounds/SpeechLike.h"

namespace orvanta::demo {
namespace {

using embedded::gameLike;
using embedded::inTurns;
using embedded::mixtureOf;
using embedded::scaled;
using embedded::Sound;
using embedded::speechLike;

/// The podcast rests while a call is on. Neither rest is so long that the panel forgets it.
constexpr embedded::Turns kCalls{.before = -42, .on = 50, .off = 50};
constexpr embedded::Turns kBetweenCalls{.before = 8, .on = 50, .off = 50};

Sound music() {
    return scaled(embedded::musicLike(3), 0.7F);
}

Sound podcast() {
    return scaled(speechLike(4), 1.1F);
}

/// A presenter over a tune that leaves room for the voice.
Sound video() {
    return mixtureOf({scaled(speechLike(5), 0.55F), scaled(embedded::musicLike(2), 0.2F)});
}

/// Two who answer each other and now and then think for a while.
Sound call() {
    return mixtureOf(
        {inTurns(scaled(speechLike(2), 0.9F), {.on = 4, .off = 6}),
         inTurns(scaled(speechLike(3), 0.9F), {.before = 4.6, .on = 3.2, .off = 6.8})});
}

Sound game() {
    return scaled(gameLike(1), 0.6F);
}

/// Dialogue out of doors, with a score beneath it.
Sound film() {
    return mixtureOf({scaled(speechLike(6), 0.6F), scaled(gameLike(2), 0.2F),
                      inTurns(scaled(embedded::musicLike(5), 0.2F), {.on = 12, .off = 9})});
}

} // namespace

std::vector<DemoProgram> demoPrograms() {
    const std::string prefix = "com.meridane.orvanta.demo.";
    return {
        {.pid = 2101,
         .name = "Tide Browser",
         .bundleIdentifier = prefix + "browser",
         .tile = {"globe", 0xFF3CC8DCU, 0xFF1B62AEU},
         .sound = video(),
         .turns = {},
         .use = {.megabytes = 812, .threads = 64, .processorShare = 0.11}},
        {.pid = 2102,
         .name = "Podium",
         .bundleIdentifier = prefix + "podium",
         .tile = {"mic.fill", 0xFFD873F2U, 0xFF6B48E8U},
         .sound = podcast(),
         .turns = kBetweenCalls,
         .use = {.megabytes = 146, .threads = 18, .processorShare = 0.02}},
        {.pid = 2103,
         .name = "Vinyl",
         .bundleIdentifier = prefix + "vinyl",
         .tile = {"music.note", 0xFFFF8A85U, 0xFFC4255BU},
         .sound = music(),
         .turns = {.before = 12, .on = 150, .off = 45},
         .use = {.megabytes = 228, .threads = 23, .processorShare = 0.03}},
        {.pid = 2104,
         .name = "Meetly",
         .bundleIdentifier = prefix + "meetly",
         .tile = {"person.2.fill", 0xFF6DB8FFU, 0xFF2068C6U},
         .sound = call(),
         .turns = kCalls,
         .use = {.megabytes = 540, .threads = 47, .processorShare = 0.19}},
        {.pid = 2105,
         .name = "Forgotten Isles",
         .bundleIdentifier = prefix + "isles",
         .tile = {"gamecontroller.fill", 0xFF86E48CU, 0xFF2F8C46U},
         .sound = game(),
         .turns = {.on = 180, .off = 30},
         .use = {.megabytes = 2310, .threads = 38, .processorShare = 0.64}},
        {.pid = 2106,
         .name = "Telly",
         .bundleIdentifier = prefix + "telly",
         .tile = {"display", 0xFF9AA2ABU, 0xFF4A5058U},
         .sound = film(),
         .turns = {.before = 300, .on = 90, .off = 210},
         .use = {.megabytes = 305, .threads = 29, .processorShare = 0.07}},
    };
}

} // namespace orvanta::demo
