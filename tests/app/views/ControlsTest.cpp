#include "tests/app/views/ControlsSetup.h"

#include <QtQuickTest>

// The macro makes the setup by this name.
using orvanta::test::ControlsSetup;

QUICK_TEST_MAIN_WITH_SETUP(controls, ControlsSetup)
