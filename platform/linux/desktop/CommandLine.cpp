#include "platform/linux/desktop/CommandLine.h"

#include <algorithm>
#include <array>

namespace orvanta::desktop {
namespace {

constexpr std::array kInterpreters = std::to_array<std::string_view>({"python",
                                                                      "perl",
                                                                      "ruby",
                                                                      "node",
                                                                      "nodejs",
                                                                      "java",
                                                                      "php",
                                                                      "lua",
                                                                      "luajit",
                                                                      "gjs",
                                                                      "gjs-console",
                                                                      "mono",
                                                                      "mono-sgen",
                                                                      "electron",
                                                                      "sh",
                                                                      "bash",
                                                                      "dash",
                                                                      "zsh",
                                                                      "fish",
                                                                      "ksh",
                                                                      "tclsh",
                                                                      "wish",
                                                                      "guile",
                                                                      "qml",
                                                                      "julia",
                                                                      "bun",
                                                                      "deno",
                                                                      "wine",
                                                                      "wine-stable",
                                                                      "wine-development",
                                                                      "wine-preloader",
                                                                      "wine64-preloader",
                                                                      "proton",
                                                                      "love",
                                                                      "dosbox",
                                                                      "dosbox-x",
                                                                      "dosbox-staging",
                                                                      "scummvm"});

constexpr std::array kShells =
    std::to_array<std::string_view>({"sh", "bash", "dash", "zsh", "fish", "ksh"});

/// Programs that start another and stand before it on the command line.
constexpr std::array kWrappers = std::to_array<std::string_view>(
    {"env",     "nohup",     "nice",        "ionice",           "setsid",      "stdbuf",
     "pkexec",  "sudo",      "dbus-launch", "dbus-run-session", "systemd-run", "systemd-inhibit",
     "padsp",   "pw-jack",   "pasuspender", "gamemoderun",      "mangohud",    "prime-run",
     "optirun", "primusrun", "firejail",    "torsocks"});

/// What stands behind these is a name inside the sandbox.
constexpr std::array kSandboxLaunchers = std::to_array<std::string_view>({"flatpak", "snap"});

/// Options of interpreters whose next word belongs to them.
constexpr std::array kOptionsWithValue = std::to_array<std::string_view>(
    {"-cp", "-classpath", "--class-path", "--module-path", "-W", "-X", "-I", "-r", "--require"});

constexpr std::array kOptionsThatNameTheScript = std::to_array<std::string_view>({"-m", "-jar"});

constexpr std::array kOptionsWithCode = std::to_array<std::string_view>({"-c", "-e", "--eval"});

constexpr int kDeepestNesting = 8;

template <typename Words>
bool contains(const Words& words, std::string_view word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// "python3.11" is Python, "love-11.5" is LÖVE.
std::string_view withoutVersion(std::string_view name) {
    const auto last = name.find_last_not_of("0123456789.-");
    return last == std::string_view::npos ? name : name.substr(0, last + 1);
}

/// What may stand between a wrapper and the program: options, numbers for them, VARIABLE=value.
bool belongsToWrapper(const std::string& word) {
    return word.starts_with('-') || word.find('=') != std::string::npos ||
           word.find_first_not_of("0123456789") == std::string::npos;
}

/// Takes words until the quotes, escapes and codes of one word have ended.
class WordReader {
public:
    explicit WordReader(std::string_view line) : rest_(line) {}

    [[nodiscard]] std::vector<std::string> words() {
        while (!rest_.empty())
            take(next());
        endWord();
        return std::move(words_);
    }

private:
    char next() {
        const char letter = rest_.front();
        rest_.remove_prefix(1);
        return letter;
    }

    void take(char letter) {
        if (letter == '"') {
            isQuoted_ = !isQuoted_;
            hasWord_ = true;
        } else if (letter == '\\' && !rest_.empty()) {
            add(next());
        } else if (letter == '%' && !rest_.empty()) {
            if (next() == '%')
                add('%');
        } else if ((letter == ' ' || letter == '\t') && !isQuoted_) {
            endWord();
        } else {
            add(letter);
        }
    }

    void add(char letter) {
        word_ += letter;
        hasWord_ = true;
    }

    /// A word of nothing but a code is none.
    void endWord() {
        if (hasWord_)
            words_.push_back(std::move(word_));
        word_.clear();
        hasWord_ = false;
    }

    std::string_view rest_;
    std::vector<std::string> words_;
    std::string word_;
    bool hasWord_ = false;
    bool isQuoted_ = false;
};

/// The words behind a wrapper and what belongs to it.
std::vector<std::string> unwrapped(const std::vector<std::string>& words) {
    const auto program = std::find_if_not(words.begin() + 1, words.end(), belongsToWrapper);
    return {program, words.end()};
}

/// The words of the code that a shell is given; empty when it is given none.
std::vector<std::string> shellCode(const std::vector<std::string>& words) {
    const auto option = std::find(words.begin(), words.end(), "-c");
    if (option == words.end() || option + 1 == words.end())
        return {};
    std::vector<std::string> code = execWords(*(option + 1));
    if (!code.empty() && code.front() == "exec")
        code.erase(code.begin());
    return code;
}

} // namespace

std::vector<std::string> execWords(std::string_view line) {
    return WordReader(line).words();
}

bool isInterpreter(std::string_view fileName) {
    return contains(kInterpreters, fileName) || contains(kInterpreters, withoutVersion(fileName));
}

std::optional<std::string> scriptOf(std::span<const std::string> arguments) {
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const std::string& argument = arguments[at];
        const bool hasNext = at + 1 < arguments.size();
        if (contains(kOptionsWithCode, argument))
            return std::nullopt;
        if (contains(kOptionsThatNameTheScript, argument) && hasNext)
            return arguments[at + 1];
        if (contains(kOptionsWithValue, argument))
            ++at;
        else if (!argument.empty() && !argument.starts_with('-'))
            return argument;
    }
    return std::nullopt;
}

std::optional<std::string> programOfCommand(std::vector<std::string> words) {
    for (int depth = 0; depth < kDeepestNesting && !words.empty(); ++depth) {
        const std::string_view name = fileNameOf(words.front());
        if (contains(kSandboxLaunchers, name))
            return std::nullopt;
        if (contains(kWrappers, name)) {
            words = unwrapped(words);
            continue;
        }
        if (contains(kShells, name))
            if (auto code = shellCode(words); !code.empty()) {
                words = std::move(code);
                continue;
            }
        if (isInterpreter(name))
            if (auto script = scriptOf(std::span(words).subspan(1)))
                return script;
        return words.front();
    }
    return std::nullopt;
}

bool isWindowsPath(std::string_view path) {
    constexpr std::string_view kRoot = ":\\";
    return path.size() > kRoot.size() && path.substr(1, kRoot.size()) == kRoot;
}

std::string_view fileNameOf(std::string_view path) {
    return path.substr(path.rfind(isWindowsPath(path) ? '\\' : '/') + 1);
}

} // namespace orvanta::desktop
