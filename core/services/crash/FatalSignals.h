#pragma once

#include <filesystem>

namespace orvanta::crash {

/// Opens the file that takes a line for each fatal signal, and makes it where it is missing. Where
/// that fails signals leave no line. Child programs do not inherit it.
void openCrashMarker(const std::filesystem::path& file);

/// Lets `fatalSignalHandler` have the signals that a program dies of by its own fault. The calling
/// thread, which should be the main one, is given a second stack for it, so that it can run when
/// the first has overflowed.
void handleFatalSignals() noexcept;

} // namespace orvanta::crash
