#include "core/services/crash/ReportFolder.h"

#include "core/services/crash/PrivateFile.h"
#include "core/services/crash/UTF8.h"

#include <algorithm>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace orvanta::crash {

namespace fs = std::filesystem;

namespace {

bool isReportName(std::string_view name) {
    return name.starts_with("crash-") && name.ends_with(".log");
}

/// A report's name and the number of the process that writes it.
bool isUnfinishedName(const fs::path& name) {
    const std::string process = name.extension().string();
    return isReportName(name.stem().string()) && process.size() > 1 &&
           process.find_first_not_of("0123456789", 1) == std::string::npos;
}

} // namespace

ReportFolder::ReportFolder(fs::path path) : path_(std::move(path)) {
    makePrivateFolders(path_);
}

std::optional<std::vector<std::string>> ReportFolder::names() const {
    std::vector<std::string> names;
    std::error_code failure;
    for (fs::directory_iterator entry(path_, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        std::string name = entry->path().filename().string();
        std::error_code ignored;
        if (isReportName(name) && entry->is_regular_file(ignored))
            names.push_back(std::move(name));
    }
    if (failure)
        return std::nullopt;
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<std::string> ReportFolder::text(const std::string& name) const {
    auto content = contentOfFile(path_ / name);
    return content && isUTF8(*content) ? std::move(content) : std::nullopt;
}

void ReportFolder::add(std::string timestamp, std::string_view text) const {
    std::replace(timestamp.begin(), timestamp.end(), ':', '-');
    const fs::path report = path_ / ("crash-" + timestamp + ".log");
    // Another process may be writing its own.
    fs::path unfinished = report;
    unfinished += "." + std::to_string(::getpid());

    std::error_code failure;
    fs::remove(unfinished, failure);
    failure.clear();
    if (PrivateFile(unfinished).append(text))
        fs::rename(unfinished, report, failure);
    else
        failure = std::make_error_code(std::errc::io_error);
    if (failure)
        fs::remove(unfinished, failure);
}

void ReportFolder::removeUnfinished() const {
    std::error_code failure;
    for (fs::directory_iterator entry(path_, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        std::error_code ignored;
        if (isUnfinishedName(entry->path().filename()))
            fs::remove(entry->path(), ignored);
    }
}

void ReportFolder::moveToSent() const {
    const fs::path sent = path_ / "sent";
    makePrivateFolders(sent);
    for (const std::string& name : names().value_or(std::vector<std::string>{})) {
        std::error_code ignored;
        // A rename would take the place of what was sent before.
        if (!fs::exists(fs::symlink_status(sent / name, ignored)))
            fs::rename(path_ / name, sent / name, ignored);
    }
}

} // namespace orvanta::crash
