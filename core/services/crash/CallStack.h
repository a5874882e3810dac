#pragma once

#include <string>
#include <vector>

namespace orvanta::crash {

/// The calls that led here, the newest first, 128 at most. `newest` is the return address of the
/// first one that is of interest; where it is not found there are all.
///
/// Each is "module symbol + offset", and where the module tells no symbol for the place
/// "module address (+offset in module)". Modules are named without their folders. Only dynamic
/// symbols are told, so a program's own functions have names when it is linked to export them.
[[nodiscard]] std::vector<std::string> callStackSymbols(const void* newest);

/// "std::vector<int>" of "St6vectorIiSaIiEE"; what is no such name stays as it is.
[[nodiscard]] std::string demangled(const char* name);

} // namespace orvanta::crash
