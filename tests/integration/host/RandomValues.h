// Values for the arguments of an event, good and bad, from a seeded generator.
#pragma once

#include "Values.h"

#include <random>

corvane::host::Values randomValues(const corvane::host::Event& event, std::mt19937& random);
