// What the thread sanitizer passes over in the programs that use Qt: its own options must name no
// library that another program unloads, and those that talk to PipeWire unload libdbus.

/// Of the sanitizer's interface: found by its name when the program starts. Qt, GLib and libdbus
/// have a bus thread and event queues that synchronise by futexes of their own. Only what these
/// libraries themselves call is passed over, not what our code does when they call it; and values
/// in a message, which Qt's bus thread lets go when the message is sent, and disconnecting, which
/// that thread does to listeners when the bus goes.
extern "C" const char* __tsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libQt6Core.so\n"
           "called_from_lib:libQt6DBus.so\n"
           "called_from_lib:libdbus-1.so\n"
           "called_from_lib:libglib-2.0.so\n"
           "race:QObject::disconnect\n"
           "race:QtPrivate::QMetaTypeForType\n";
}
