#include "cli/mix/CommandTable.h"

#include "cli/mix/CommandError.h"
#include "cli/mix/Values.h"

#include <fmt/format.h>

#include <algorithm>

namespace orvanta::cli {
namespace {

std::size_t wordCount(const Command& command) {
    return command.name.find(' ') == std::string_view::npos ? 1 : 2;
}

bool isMeant(const Command& command, Words words) {
    const std::size_t count = wordCount(command);
    return words.size() >= count &&
           isSameWord(command.name, fmt::format("{}", fmt::join(words.first(count), " ")));
}

/// "volume APP 0..2".
std::string form(const Command& command) {
    return command.arguments.empty() ? std::string(command.name)
                                     : fmt::format("{} {}", command.name, command.arguments);
}

const Command& findCommand(Words words) {
    for (const Command& command : commandTable())
        if (isMeant(command, words))
            return command;
    throw CommandError(
        fmt::format("There is no command {}; help tells of all.", inQuotes(words.front())));
}

} // namespace

const std::vector<Command>& commandTable() {
    static const std::vector<Command> table = [] {
        std::vector<Command> all;
        for (const auto commands :
             {viewCommands(), tapCommands(), soundCommands(), recordingCommands(), masterCommands(),
              profileCommands(), sessionCommands()})
            all.insert(all.end(), commands.begin(), commands.end());
        return all;
    }();
    return table;
}

std::string commandHelp() {
    std::size_t width = 0;
    for (const Command& command : commandTable())
        width = std::max(width, form(command).size());
    std::string text;
    for (const Command& command : commandTable())
        text += fmt::format("  {:<{}}  {}\n", form(command), width, command.help);
    return text + "APP is a process id, a name or an identifier; names with blanks stand in "
                  "\"quotes\".\n";
}

Reply runLine(Mixer& mixer, std::string_view line) {
    const std::vector<std::string> all = wordsOf(line);
    if (all.empty())
        return {};
    const Words words = all;
    const Command& command = findCommand(words);
    const Words arguments = words.subspan(wordCount(command));
    if (arguments.size() < command.fewest || arguments.size() > command.most)
        throw CommandError(fmt::format("The command is: {}.", form(command)));
    return command.run(mixer, arguments);
}

} // namespace orvanta::cli
