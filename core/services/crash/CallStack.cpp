#include "core/services/crash/CallStack.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <memory>
#include <span>
#include <string_view>

namespace orvanta::crash {
namespace {

constexpr std::size_t kMostCalls = 128;

std::uintptr_t number(const void* address) {
    return reinterpret_cast<std::uintptr_t>(address);
}

std::string_view fileName(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

std::string described(const char* returnAddress) {
    Dl_info place{};
    // A call that never returns may be the last instruction of its function: look at the call.
    if (dladdr(returnAddress - 1, &place) == 0 || place.dli_fname == nullptr)
        return fmt::format("??? {:#x}", number(returnAddress));
    const std::string_view module = fileName(place.dli_fname);
    if (place.dli_sname == nullptr)
        return fmt::format("{} {:#x} (+{:#x})", module, number(returnAddress),
                           number(returnAddress) - number(place.dli_fbase));
    return fmt::format("{} {} + {}", module, demangled(place.dli_sname),
                       number(returnAddress) - number(place.dli_saddr));
}

} // namespace

std::vector<std::string> callStackSymbols(const void* newest) {
    void* addresses[kMostCalls] = {};
    const int count = backtrace(addresses, static_cast<int>(kMostCalls));
    std::span<void* const> calls(addresses, static_cast<std::size_t>(count));
    const auto first = std::find(calls.begin(), calls.end(), newest);
    if (first != calls.end())
        calls = calls.subspan(static_cast<std::size_t>(first - calls.begin()));
    std::vector<std::string> symbols;
    symbols.reserve(calls.size());
    for (void* const call : calls)
        symbols.push_back(described(static_cast<const char*>(call)));
    return symbols;
}

std::string demangled(const char* name) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> readable(
        abi::__cxa_demangle(name, nullptr, nullptr, &status), &std::free);
    return readable ? readable.get() : name;
}

} // namespace orvanta::crash
