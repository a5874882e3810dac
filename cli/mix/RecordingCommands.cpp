// Recordings, and how they are made.

#include "cli/StatusWords.h"
#include "cli/mix/AppAnswer.h"
#include "cli/mix/Command.h"
#include "cli/mix/CommandError.h"
#include "cli/mix/Values.h"

#include <array>

namespace orvanta::cli {
namespace {

Reply start(Mixer& mixer, const AudioApp& app) {
    MixerViewModel& model = mixer.model;
    if (model.isRecording(app.pid))
        throw CommandError(fmt::format("{} is being recorded already.", described(app)));
    mixer.log.forgetLastError();
    const auto file = model.startRecording(app.pid);
    const std::string reason = withStatusInWords(mixer.log.lastError());
    if (!file)
        throw CommandError(fmt::format("{} cannot be recorded into {}: {}.", described(app),
                                       inQuotes(model.recordingSaveDirectory.get().string()),
                                       reason));
    if (!reason.empty())
        throw CommandError(fmt::format("{} is recorded into {} alone: {}.", described(app),
                                       inQuotes(file->string()), reason));
    return {answerAbout(app).text("recording", file->string()).line()};
}

Reply stop(Mixer& mixer, const AudioApp& app) {
    if (!mixer.model.isRecording(app.pid))
        throw CommandError(fmt::format("{} is not being recorded.", described(app)));
    const auto file = mixer.model.stopRecording(app.pid);
    if (!file)
        throw CommandError(fmt::format("The recording of {} had ended by itself.", described(app)));
    return {answerAbout(app).text("recorded", file->string()).line()};
}

Reply record(Mixer& mixer, Words arguments) {
    const AudioApp app = mixer.tappedApp(arguments[0]);
    if (isSameWord(arguments[1], "start"))
        return start(mixer, app);
    if (isSameWord(arguments[1], "stop"))
        return stop(mixer, app);
    throw CommandError(fmt::format("{} is neither start nor stop.", inQuotes(arguments[1])));
}

Reply format(Mixer& mixer, Words arguments) {
    const RecordingFormat chosen = readNamed(
        arguments[0], allRecordingFormats(), [](RecordingFormat each) { return rawValue(each); },
        "recording format");
    mixer.model.recordingFormat.set(chosen);
    return {Answer().word("format", rawValue(chosen)).line()};
}

Reply mode(Mixer& mixer, Words arguments) {
    const RecordingMode chosen = readNamed(
        arguments[0], allRecordingModes(), [](RecordingMode each) { return rawValue(each); },
        "recording mode");
    mixer.model.recordingMode.set(chosen);
    return {Answer().word("mode", rawValue(chosen)).line()};
}

/// A path as a shell takes it.
std::filesystem::path readPath(const std::string& word, const std::filesystem::path& home) {
    if (word.empty())
        throw CommandError("A folder needs a name.");
    if (word == "~" || word.starts_with("~/"))
        return home / word.substr(std::min<std::size_t>(2, word.size()));
    return std::filesystem::absolute(word);
}

Reply folder(Mixer& mixer, Words arguments) {
    mixer.model.recordingSaveDirectory.set(readPath(arguments[0], mixer.home));
    return {Answer().text("folder", mixer.model.recordingSaveDirectory.get().string()).line()};
}

Reply limit(Mixer& mixer, Words arguments) {
    constexpr Range kSeconds{1.0, 1'000'000.0};
    mixer.model.maxRecordingDuration.set(readNumber(arguments[0], kSeconds));
    return {Answer().number("limit", mixer.model.maxRecordingDuration.get()).line()};
}

/// The file viewer prints the path.
Reply reveal(Mixer& mixer, Words /*arguments*/) {
    if (!mixer.model.lastRecordingURL.get())
        throw CommandError("No recording has been finished yet.");
    mixer.model.revealLastRecording();
    return {};
}

constexpr std::array kRecordingCommands{
    Command{"record", "APP start|stop", "record it into a new file", 2, 2, record},
    Command{"format", "wav|m4a", "of recordings to come", 1, 1, format},
    Command{"mode", "processed|original|both",
            "what the device gets, what the program gives, or a file of each", 1, 1, mode},
    Command{"folder", "PATH", "where recordings go", 1, 1, folder},
    Command{"limit", "SECONDS", "the longest that a recording becomes", 1, 1, limit},
    Command{"reveal", "", "the path of the recording that was finished last", 0, 0, reveal},
};

} // namespace

std::span<const Command> recordingCommands() {
    return kRecordingCommands;
}

} // namespace orvanta::cli
