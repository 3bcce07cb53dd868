// Fixtures: the plug-in in its first state with a host, an empty registry and no INI files; and the plug-in started.
// With what nearly every test of the plug-in looks at.
#pragma once

#include "kernel/base/plugin_state.h"
#include "monitor/monitor_table.h"
#include "monitor/selection.h"
#include "monitor/vcp_codes.h"
#include "support/box_answerer.h"
#include "support/comes.h"
#include "support/plugin_run.h"
#include "support/replaced_imports.h"
#include "support/resource_counts.h"
#include "support/text.h"

#include <gtest/gtest.h>

class HostTest : public testing::Test, protected HostRun {};

// A test that fails half-way is stopped all the same.
class PluginTest : public testing::Test, protected PluginRun {
protected:
    void TearDown() override { StopIfRunning(); }
};

// Does something over and over: handles, windows, GDI objects and heap blocks must be as many as after the first time,
// with which the system makes for good what it needs.
void ExpectNothingLeft(int rounds, const std::function<void()> &round);
