// Fixtures: the plug-in in its first state with a host, an empty registry and no INI files; and the plug-in started.
#pragma once

#include "support/plugin_run.h"
#include "support/resource_counts.h"

#include <gtest/gtest.h>

class HostTest : public testing::Test, protected HostRun {};

// A test that fails half-way is stopped all the same.
class PluginTest : public testing::Test, protected PluginRun {
protected:
    void TearDown() override { StopIfRunning(); }
};
