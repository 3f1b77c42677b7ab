// The order in which plugins are loaded: a heap by priority, the highest first. Equal
// ones come out in the order that follows from the heap and from how they were put in.
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

/// Put in as the directory lists them. Owns nothing.
template <typename T>
using PriorityOrder = std::priority_queue<T*, std::vector<T*>, ComparePriority<T>>;
