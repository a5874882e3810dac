#include "platform/linux/desktop/DesktopEntry.h"

#include "platform/linux/desktop/CommandLine.h"
#include "platform/linux/desktop/KeyFile.h"

#include <algorithm>

namespace orvanta::desktop {
namespace {

/// A text in the best of the user's languages that it is there in.
class LocalizedText {
public:
    explicit LocalizedText(const std::vector<std::string>& localeKeys)
        : localeKeys_(localeKeys), rank_(localeKeys.size() + 1) {}

    void offer(const KeyFileLine& line) {
        const std::size_t rank = rankOf(line.locale);
        if (rank >= rank_)
            return;
        std::string text = unescaped(line.value);
        if (!isDisplayText(text))
            return;
        text_ = std::move(text);
        rank_ = rank;
    }

    [[nodiscard]] const std::string& text() const { return text_; }

private:
    /// The text without a locale comes after the user's languages; other languages come never.
    [[nodiscard]] std::size_t rankOf(std::string_view locale) const {
        const auto found = std::find(localeKeys_.begin(), localeKeys_.end(), locale);
        if (found == localeKeys_.end() && !locale.empty())
            return localeKeys_.size() + 1;
        return static_cast<std::size_t>(found - localeKeys_.begin());
    }

    const std::vector<std::string>& localeKeys_;
    std::size_t rank_;
    std::string text_;
};

class EntryReader {
public:
    EntryReader(std::string id, std::filesystem::path file,
                const std::vector<std::string>& localeKeys)
        : name_(localeKeys), icon_(localeKeys) {
        entry_.id = std::move(id);
        entry_.file = std::move(file);
    }

    void take(const KeyFileLine& line) {
        if (line.key == "Name")
            name_.offer(line);
        else if (line.key == "Icon")
            icon_.offer(line);
        else if (line.locale.empty())
            takePlain(line.key, line.value);
    }

    [[nodiscard]] std::optional<DesktopEntry> entry() {
        if (!isApplication_ || (!entry_.isHidden && name_.text().empty()))
            return std::nullopt;
        entry_.name = name_.text();
        entry_.icon = icon_.text();
        return std::move(entry_);
    }

private:
    void takePlain(std::string_view key, std::string_view value) {
        if (key == "Type")
            isApplication_ = value == "Application";
        else if (key == "Hidden")
            entry_.isHidden = value == "true";
        else if (key == "NoDisplay")
            entry_.isShown = value != "true";
        else if (key == "Exec")
            takeCommand(unescaped(value));
        else if (key == "TryExec")
            addProgram(unescaped(value));
        else if (key == "StartupWMClass")
            entry_.windowClass = unescaped(value);
        else if (key == "X-Flatpak")
            entry_.flatpakID = unescaped(value);
        else if (key == "X-SnapInstanceName")
            entry_.snapName = unescaped(value);
        else if (key == "Terminal")
            entry_.startsOthers = entry_.startsOthers || value == "true";
        else if (key == "Categories")
            takeCategories(value);
    }

    void takeCommand(const std::string& command) {
        entry_.command = execWords(command);
        if (auto program = programOfCommand(entry_.command))
            addProgram(*std::move(program));
    }

    void addProgram(std::string program) {
        if (!program.empty())
            entry_.programs.push_back(std::move(program));
    }

    void takeCategories(std::string_view value) {
        for (const std::string_view category : listItems(value, ';'))
            if (category == "TerminalEmulator" || category == "FileManager")
                entry_.startsOthers = true;
    }

    DesktopEntry entry_;
    LocalizedText name_;
    LocalizedText icon_;
    bool isApplication_ = false;
};

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string id,
                                              std::filesystem::path file,
                                              const std::vector<std::string>& localeKeys) {
    constexpr std::string_view kGroup = "Desktop Entry";
    EntryReader entry(std::move(id), std::move(file), localeKeys);
    KeyFileReader lines(text);
    bool isInside = false;
    while (const auto line = lines.next()) {
        if (line->group == kGroup)
            entry.take(*line);
        else if (isInside)
            break; // What follows are actions, of no interest here.
        isInside = line->group == kGroup;
    }
    return entry.entry();
}

} // namespace orvanta::desktop
