#pragma once

#include "Fakes/TemporaryFolder.h"
#include "Fakes/TestPlatform.h"

#include <gtest/gtest.h>

namespace marrowick {

/// The full set of fakes, but a real disk with a folder for the test.
class DiskTest : public testing::Test {
protected:
    DiskTest();

    TemporaryFolder folder;
    TestPlatform desktop;
};

}
