/// Of the sanitizer's interface: found by its name when the program starts. The toolkit paints with
/// threads of its own, and the sanitizer cannot see how it waits for them.
extern "C" const char* __tsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions() {
    return "race:libQt6Core.so\n"
           "race:libQt6Gui.so\n";
}
