// Formats the values of an event as arguments of `corvane emit` and of scenarios.
#pragma once

#include <string>
#include <vector>

#include "platform/host/events/EventTable.h"
#include "platform/host/events/Values.h"

/// Returns "name=value" for every argument and record field.
std::vector<std::string> wordsOf(const corvane::host::Event& event,
                                 const corvane::host::Values& values);
