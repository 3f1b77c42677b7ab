// The order in which plugins are loaded: a heap by priority, the highest first. The order of equal
// priorities follows from the heap and the order of insertion.
#pragma once

#include <queue>
#include <vector>

/// `T` has `int getPriority() const`.
template <typename T>
struct ComparePriority {
    bool operator()(const T* left, const T* right) const {
        return left->getPriority() < right->getPriority();
    }
};

/// Plugins are inserted in the directory's order. Not owning.
template <typename T>
using PriorityOrder = std::priority_queue<T*, std::vector<T*>, ComparePriority<T>>;
