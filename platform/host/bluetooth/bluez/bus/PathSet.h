// The objects that are in some state, as far as the callbacks have been told or the
// objects were found so.
#pragma once

#include <set>
#include <string>

namespace corvane::host {

class PathSet {
public:
    bool contains(const std::string& path) const { return m_paths.contains(path); }

    /// Returns whether that changed anything.
    bool set(const std::string& path, bool isIn) {
        return isIn ? m_paths.insert(path).second : m_paths.erase(path) > 0;
    }

    void clear() { m_paths.clear(); }

private:
    std::set<std::string> m_paths;
};

}  // namespace corvane::host
