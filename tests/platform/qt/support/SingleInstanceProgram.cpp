// A program that runs once in a session: FOLDER NAME PATIENCE. Says on standard output which start
// it is, and "show" for each one after it. Ends when it is not the first, or with its input.

#include "platform/qt/session/SingleInstance.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>
#include <iostream>
#include <string>
#include <unistd.h>

namespace orvanta::test {
namespace {

const char* wordFor(SingleInstance::Start start) {
    switch (start) {
    case SingleInstance::Start::first:
        return "first";
    case SingleInstance::Start::heard:
        return "heard";
    case SingleInstance::Start::unanswered:
        return "unanswered";
    }
    return "?";
}

int runOnce(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);
    const QCoreApplication application(argc, argv);
    const SingleInstance instance(
        {.folder = argv[1], .name = argv[2], .patience = Seconds(std::stod(argv[3]))},
        [] { std::cout << "show" << std::endl; });
    std::cout << wordFor(instance.start()) << std::endl;
    if (instance.start() != SingleInstance::Start::first)
        return 0;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [] { QCoreApplication::quit(); });
    return QCoreApplication::exec();
}

} // namespace
} // namespace orvanta::test

int main(int argc, char** argv) {
    return argc == 4 ? orvanta::test::runOnce(argc, argv) : 2;
}
