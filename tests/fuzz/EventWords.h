// The values of an event written down again, as `corvane emit` and scenarios take them.
#pragma once

#include <string>
#include <vector>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

/// key=value for every argument and record field that has a value.
std::vector<std::string> wordsOf(const corvane::host::Event& event,
                                 const corvane::host::Values& values);
