// Computes which plugins the daemon would load from a directory, and in which order.
#include "tools/corvane/order/LoadOrder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <list>
#include <stdexcept>

#include "daemon/src/PluginOrder.h"
#include "tools/corvane/common/Exposure.h"

namespace corvane::tool {

namespace {

std::string problemOf(const std::filesystem::path& file) {
    const int fd = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        return std::string("can't be opened: ") + std::strerror(errno);
    }
    char byte = 0;
    const auto size = read(fd, &byte, 1);
    const int error = errno;
    close(fd);
    return size < 0 ? std::string("can't be read: ") + std::strerror(error) : "";
}

}  // namespace

LoadOrder readLoadOrder(const std::string& directory) {
    const auto listing = FileManager::listDirectory(directory);
    if (!listing) {
        throw std::runtime_error(directory + " can't be read: " + std::strerror(errno));
    }
    if (listing->error != 0) {
        throw std::runtime_error(directory +
                                 " can't be read to its end: " + std::strerror(listing->error));
    }
    LoadOrder order{directory, {}, {}, exposureOf(directory)};
    std::list<OrderedFile> candidates;
    for (const auto& entry : listing->entries) {
        if (entry.candidacy == FileManager::Candidacy::Candidate) {
            candidates.push_back({entry.name, candidates.size() + 1,
                                  PluginPriorityChecker::decide(entry.name),
                                  problemOf(std::filesystem::path(directory) / entry.name)});
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
