#include "core/services/CrashReporter.h"

#include "core/services/crash/CrashReport.h"
#include "core/services/crash/FatalSignals.h"
#include "core/services/crash/ISO8601.h"
#include "core/services/crash/MailURL.h"
#include "core/services/crash/UTF8.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <stdexcept>
#include <utility>

namespace orvanta {
namespace {

constexpr const char* kLogFolder = "Library/Logs/Orvanta";
constexpr std::size_t kMostReportsInMail = 3;

std::atomic<CrashReporter*> sharedReporter{nullptr};
/// The one whose `install` came last.
std::atomic<const CrashReporter*> installedReporter{nullptr};

void handleUncaughtException(const crash::UncaughtException& exception) {
    if (const CrashReporter* const reporter = installedReporter.load())
        reporter->handleException(exception);
}

} // namespace

CrashReporter::CrashReporter(HostInfo host, const WallClock& clock)
    : host_(std::move(host)),
      clock_(clock),
      reports_(host_.homeDirectory / kLogFolder / "crashes"),
      activityLog_(host_.homeDirectory / kLogFolder / "activity.log", clock) {}

CrashReporter::~CrashReporter() {
    const CrashReporter* self = this;
    installedReporter.compare_exchange_strong(self, nullptr);
}

CrashReporter& CrashReporter::makeShared(const HostInfo& host, const WallClock& clock) {
    static auto* const only = new CrashReporter(host, clock);
    sharedReporter = only;
    return *only;
}

CrashReporter& CrashReporter::shared() {
    CrashReporter* const reporter = sharedReporter.load();
    if (reporter == nullptr)
        throw std::logic_error("the program's crash reporter is asked for before it is made");
    return *reporter;
}

void CrashReporter::install() noexcept {
    try {
        crash::openCrashMarker(reports_.marker());
        reports_.removeUnfinished();
    } catch (...) {
        // Signals leave no line, or an unfinished report stays.
    }
    crash::handleFatalSignals();
    installedReporter = this;
    crash::setUncaughtExceptionHandler(handleUncaughtException);
    activityLog_.write("🟢 Orvanta launched — crash reporter installed\n");
}

bool CrashReporter::hasUnsentReports() const {
    return unsentReportCount() > 0;
}

int CrashReporter::unsentReportCount() const {
    const auto names = reports_.names();
    return names ? static_cast<int>(names->size()) : 0;
}

std::optional<CrashReporter::ReportEmail> CrashReporter::composeReportEmail() const {
    const auto names = reports_.names();
    if (!names || names->empty())
        return std::nullopt;
    const std::string version = host_.shortVersion.value_or("?");
    std::string body = fmt::format("Hi Meridane,\n\n"
                                   "Orvanta encountered a crash. Here are the details:\n\n"
                                   "App Version: {}\nmacOS: {}\nReports: {}\n",
                                   version, host_.operatingSystemVersion, names->size());
    const std::size_t left = names->size() - std::min(names->size(), kMostReportsInMail);
    for (std::size_t index = left; index < names->size(); ++index) {
        const std::string& name = (*names)[index];
        if (const auto text = reports_.text(name))
            body += fmt::format("\n--- {} ---\n{}\n", name, *text);
    }
    body += "\n[Additional context: describe what you were doing when the crash happened]\n";
    return ReportEmail{crash::madeUTF8("Orvanta Crash Report — v" + version),
                       crash::madeUTF8(body)};
}

std::optional<std::string> CrashReporter::composeReportURL() const {
    const auto email = composeReportEmail();
    if (!email)
        return std::nullopt;
    return crash::mailURL(supportEmail, email->subject, email->body);
}

void CrashReporter::markReportsSent() const {
    reports_.moveToSent();
}

void CrashReporter::handleException(const crash::UncaughtException& exception) const noexcept {
    try {
        const std::string timestamp = crash::iso8601(clock_.now());
        const std::string report = crash::crashReport(host_, timestamp, exception);
        reports_.add(timestamp, report);
        activityLog_.write("🔴 CRASH: " + report + "\n");
    } catch (...) {
        // Out of memory, most likely. The signal that follows leaves its line.
    }
}

} // namespace orvanta
