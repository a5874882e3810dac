#include "core/platform/Logger.h"

#include <cstdarg>
#include <cstdio>
#include <utility>

namespace orvanta {
namespace {

__attribute__((format(printf, 1, 0))) std::string formatted(const char* format, va_list arguments) {
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0)
        return format;
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, arguments);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

} // namespace

Logger::Logger(SystemLog& log, std::string category) : log_(log), category_(std::move(category)) {}

void Logger::debug(const char* format, ...) const {
    va_list arguments;
    va_start(arguments, format);
    log_.write({LogLevel::debug, kLogSubsystem, category_, formatted(format, arguments)});
    va_end(arguments);
}

void Logger::info(const char* format, ...) const {
    va_list arguments;
    va_start(arguments, format);
    log_.write({LogLevel::info, kLogSubsystem, category_, formatted(format, arguments)});
    va_end(arguments);
}

void Logger::error(const char* format, ...) const {
    va_list arguments;
    va_start(arguments, format);
    log_.write({LogLevel::error, kLogSubsystem, category_, formatted(format, arguments)});
    va_end(arguments);
}

void Logger::composed(std::string_view line) const {
    log_.write({LogLevel::debug, kLogSubsystem, category_, line});
}

} // namespace orvanta
