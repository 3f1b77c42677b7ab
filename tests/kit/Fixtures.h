// The paths of the plugins under test.
#pragma once

#include <string>

inline std::string fixture(const std::string& name) {
    return FIXTURE_DIRECTORY "/" + name + ".so";
}
