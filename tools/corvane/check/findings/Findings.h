// What a check can find: the ids are stable, and docs/check.md explains each.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::check {

enum class Severity { Error, Warning };
enum class Stage { Static, Running };

struct FindingKind {
    const char* id;
    Severity severity;
    Stage stage;
    const char* explanation;
    const char* advice;
};

std::span<const FindingKind> allFindingKinds();

/// Throws std::out_of_range for an id that doesn't exist.
const FindingKind& findingKind(std::string_view id);

struct Finding {
    const FindingKind* kind;
    std::vector<std::string> details;  // where and how often, one line each
};

/// In the order found, one for each id.
class Findings {
public:
    /// The 1000 first details of an id are kept, and 4000 bytes of each. Throws
    /// std::out_of_range for an id that doesn't exist.
    void add(std::string_view id, const std::string& detail = "");
    bool has(std::string_view id) const;
    const std::vector<Finding>& list() const { return m_list; }

private:
    std::vector<Finding> m_list;
};

}  // namespace corvane::check
