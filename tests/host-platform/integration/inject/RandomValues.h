// Random values for the arguments of an event, valid and invalid.
#pragma once

#include <random>

#include "platform/host/events/Values.h"

corvane::host::Values randomValues(const corvane::host::Event& event, std::mt19937& random);
