#include "platform/linux/desktop/CommandLine.h"

#include <algorithm>
#include <array>

namespace orvanta::desktop {
namespace {

constexpr std::array kInterpreters = std::to_array<std::string_view>(
    {"python", "perl",        "ruby",  "node",      "nodejs",   "java", "php",   "lua",  "luajit",
     "gjs",    "gjs-console", "mono",  "mono-sgen", "electron", "sh",   "bash",  "dash", "zsh",
     "fish",   "ksh",         "tclsh", "wish",      "guile",    "qml",  "julia", "bun",  "deno"});

/// What programs and games for other systems run in.
constexpr std::array kLoaders = std::to_array<std::string_view>(
    {"wine", "wine-stable", "wine-development", "wine-preloader", "wine64-preloader", "proton",
     "love", "dosbox", "dosbox-x", "dosbox-staging", "scummvm"});

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

/// What options of interpreters mean for the word behind them. One letter means different things to
/// different ones.
struct OptionRules {
    std::span<const std::string_view> withValue;    ///< it belongs to the option
    std::span<const std::string_view> namingScript; ///< it is a module or an archive to run
    std::span<const std::string_view> withCode;     ///< it is the program itself
};

constexpr std::array kShellValues = std::to_array<std::string_view>({"-o", "-O", "+o", "+O"});
constexpr std::array kShellCode = std::to_array<std::string_view>({"-c", "-lc", "-ec", "-ic"});

constexpr std::array kPythonValues = std::to_array<std::string_view>({"-W", "-X"});
constexpr std::array kPythonScripts = std::to_array<std::string_view>({"-m"});
constexpr std::array kPythonCode = std::to_array<std::string_view>({"-c"});

constexpr std::array kJavaValues = std::to_array<std::string_view>(
    {"-cp", "-classpath", "--class-path", "-p", "--module-path", "--upgrade-module-path",
     "--add-modules", "--limit-modules", "--add-opens", "--add-exports", "--add-reads",
     "--patch-module", "--enable-native-access"});
constexpr std::array kJavaScripts = std::to_array<std::string_view>({"-jar", "-m", "--module"});

constexpr std::array kPHPValues = std::to_array<std::string_view>({"-c", "-d", "-z"});
constexpr std::array kPHPScripts = std::to_array<std::string_view>({"-f", "--file"});
constexpr std::array kPHPCode = std::to_array<std::string_view>({"-r", "--run"});

constexpr std::array kOtherValues = std::to_array<std::string_view>({"-I", "-r", "--require"});
constexpr std::array kOtherCode =
    std::to_array<std::string_view>({"-e", "-E", "--eval", "-p", "--print"});

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

OptionRules optionRulesOf(std::string_view interpreter) {
    const std::string_view name = withoutVersion(interpreter);
    if (contains(kShells, name))
        return {kShellValues, {}, kShellCode};
    if (name == "python")
        return {kPythonValues, kPythonScripts, kPythonCode};
    if (name == "java")
        return {kJavaValues, kJavaScripts, {}};
    if (name == "php")
        return {kPHPValues, kPHPScripts, kPHPCode};
    return {kOtherValues, {}, kOtherCode};
}

} // namespace

std::vector<std::string> execWords(std::string_view line) {
    return WordReader(line).words();
}

bool isInterpreter(std::string_view fileName) {
    const std::string_view name = withoutVersion(fileName);
    return contains(kInterpreters, name) || contains(kLoaders, name);
}

std::optional<std::string> scriptOf(std::string_view interpreter,
                                    std::span<const std::string> arguments) {
    const OptionRules options = optionRulesOf(interpreter);
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const std::string& argument = arguments[at];
        const bool hasNext = at + 1 < arguments.size();
        if (contains(options.withCode, argument))
            return std::nullopt;
        if (contains(options.namingScript, argument) && hasNext)
            return arguments[at + 1];
        if (contains(options.withValue, argument))
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
            if (auto script = scriptOf(name, std::span(words).subspan(1)))
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
