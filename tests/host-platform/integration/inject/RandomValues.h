// Values for the arguments of an event, good and bad, from a seeded generator.
#pragma once

#include <random>

#include "platform/host/events/Values.h"

corvane::host::Values randomValues(const corvane::host::Event& event, std::mt19937& random);
