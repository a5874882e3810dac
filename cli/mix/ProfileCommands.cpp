// The whole mix under a name.

#include "cli/mix/Answer.h"
#include "cli/mix/Command.h"
#include "cli/mix/CommandError.h"
#include "cli/mix/Values.h"

#include <algorithm>
#include <array>

namespace orvanta::cli {
namespace {

constexpr std::string_view kNothing = "none\n";

std::vector<AudioProfile> profilesCalled(const Mixer& mixer, const std::string& name) {
    std::vector<AudioProfile> called;
    std::ranges::copy_if(
        mixer.model.audioProfiles.get(), std::back_inserter(called),
        [&](const AudioProfile& profile) { return mixer.isSameName(profile.name, name); });
    return called;
}

std::vector<std::string> quotedNames(const std::vector<AudioProfile>& profiles) {
    std::vector<std::string> names;
    names.reserve(profiles.size());
    for (const AudioProfile& profile : profiles)
        names.push_back(inQuotes(profile.name));
    return names;
}

AudioProfile readProfile(const Mixer& mixer, const std::string& word) {
    const auto called = profilesCalled(mixer, word);
    if (called.size() > 1)
        throw CommandError(fmt::format("There are {} profiles {}; rename or delete them where they "
                                       "can be told apart.",
                                       called.size(), inQuotes(word)));
    if (called.size() == 1)
        return called.front();
    const auto names = quotedNames(mixer.model.audioProfiles.get());
    throw CommandError(fmt::format("There is no profile {}; there {}.", inQuotes(word),
                                   names.empty()
                                       ? "is none at all"
                                       : (names.size() == 1 ? "is " : "are ") + enumerated(names)));
}

/// A name for a profile: others are told from it by theirs.
const std::string& readNewName(const Mixer& mixer, const std::string& word,
                               const std::optional<UUID>& bearer = std::nullopt) {
    if (word.find_first_not_of(' ') == std::string::npos)
        throw CommandError("A profile needs a name.");
    const auto called = profilesCalled(mixer, word);
    if (std::ranges::any_of(called, [&](const auto& each) { return each.id != bearer; }))
        throw CommandError(fmt::format("There is a profile {} already.", inQuotes(word)));
    return word;
}

/// By what it is stored as, or by what people call it.
std::string_view readIcon(const std::string& word) {
    const auto icons = MixerViewModel::profileIcons();
    const auto found = std::ranges::find_if(
        icons, [&](const ProfileIcon& icon) { return isSameWord(icon.symbol, word); });
    if (found != icons.end())
        return found->symbol;
    return readNamed(
               word, icons, [](const ProfileIcon& icon) { return icon.label; }, "icon")
        .symbol;
}

std::string line(const Mixer& mixer, const AudioProfile& profile) {
    return Answer()
        .text("profile", profile.name)
        .word("icon", profile.icon)
        .number("applications", profile.appSettings.size())
        .flag("active", mixer.model.activeProfileID.get() == profile.id)
        .line();
}

Reply profiles(Mixer& mixer, Words /*arguments*/) {
    std::string lines;
    for (const AudioProfile& profile : mixer.model.audioProfiles.get())
        lines += line(mixer, profile);
    return {lines.empty() ? std::string(kNothing) : lines};
}

Reply save(Mixer& mixer, Words arguments) {
    const std::string& name = readNewName(mixer, arguments[0]);
    const std::string_view icon =
        arguments.size() > 1 ? readIcon(arguments[1]) : MixerViewModel::profileIcons()[0].symbol;
    mixer.model.saveCurrentAsProfile(name, std::string(icon));
    return {line(mixer, readProfile(mixer, name))};
}

Reply apply(Mixer& mixer, Words arguments) {
    const AudioProfile profile = readProfile(mixer, arguments[0]);
    mixer.model.applyProfile(profile);
    return {line(mixer, profile)};
}

Reply update(Mixer& mixer, Words arguments) {
    mixer.model.updateProfile(readProfile(mixer, arguments[0]).id);
    return {line(mixer, readProfile(mixer, arguments[0]))};
}

Reply remove(Mixer& mixer, Words arguments) {
    const AudioProfile profile = readProfile(mixer, arguments[0]);
    mixer.model.deleteProfile(profile.id);
    return {Answer().text("profile", profile.name).flag("deleted", true).line()};
}

Reply rename(Mixer& mixer, Words arguments) {
    const AudioProfile profile = readProfile(mixer, arguments[0]);
    const std::string& name = readNewName(mixer, arguments[1], profile.id);
    mixer.model.renameProfile(profile.id, name);
    return {line(mixer, readProfile(mixer, name))};
}

constexpr std::array kProfileCommands{
    Command{"profiles", "", "the stored mixes, a line each", 0, 0, profiles},
    Command{"profile save", "NAME [ICON]", "store the mix under a new name", 1, 2, save},
    Command{"profile apply", "NAME", "set what is tapped now as it is stored", 1, 1, apply},
    Command{"profile update", "NAME", "store the mix as it is now", 1, 1, update},
    Command{"profile delete", "NAME", "forget it", 1, 1, remove},
    Command{"profile rename", "OLD NEW", "give it another name", 2, 2, rename},
};

} // namespace

std::span<const Command> profileCommands() {
    return kProfileCommands;
}

} // namespace orvanta::cli
