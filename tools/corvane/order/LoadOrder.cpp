// Computes which plugins the daemon would load from a directory, and in which order.
#include "tools/corvane/order/LoadOrder.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <list>
#include <stdexcept>

#include "daemon/src/PluginOrder.h"
#include "tools/corvane/common/Exposure.h"

namespace corvane::tool {

LoadOrder readLoadOrder(const std::string& directory) {
    const auto entries = FileManager::listDirectory(directory);
    if (!entries) {
        throw std::runtime_error(directory + " can't be read: " + std::strerror(errno));
    }
    LoadOrder order{directory, {}, {}, exposureOf(directory)};
    std::list<OrderedFile> candidates;
    for (const auto& entry : *entries) {
        if (entry.candidacy == FileManager::Candidacy::Candidate) {
            candidates.push_back(
                {entry.name, candidates.size() + 1, PluginPriorityChecker::decide(entry.name)});
        } else if (entry.name != "." && entry.name != "..") {
            order.skipped.push_back(entry);
        }
    }
    PriorityOrder<OrderedFile> queue;
    for (auto& candidate : candidates) {
        queue.push(&candidate);
    }
    for (; !queue.empty(); queue.pop()) {
        const auto& file = *queue.top();
        order.files.push_back(file);
        const auto exposed = exposureOf(std::filesystem::path(directory) / file.name);
        order.exposed.insert(order.exposed.end(), exposed.begin(), exposed.end());
    }
    std::ranges::sort(order.skipped, {}, &FileManager::Entry::name);
    return order;
}

}  // namespace corvane::tool
