#pragma once

#include "tests/support/EngineRig.h"

#include <gtest/gtest.h>

namespace orvanta::test {

/// A tap on the speakers, which are the default, and headphones to move it to.
class TapOnSpeakersTest : public testing::Test {
protected:
    explicit TapOnSpeakersTest(const embedded::ServerSettings& settings = {})
        : rig(settings), headphones(rig.addDevice("headphones")) {
        rig.manager->createTap(EngineRig::pid, rig.program);
    }

    EngineRig rig;
    const AudioObjectID headphones;
};

} // namespace orvanta::test
