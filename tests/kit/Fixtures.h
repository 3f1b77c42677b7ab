// Where the plugins under test are.
#pragma once

#include <string>

inline std::string fixture(const std::string& name) {
    return FIXTURE_DIRECTORY "/" + name + ".so";
}
