// The findings of a check. The ids are stable, and docs/check.md explains each of them.
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

/// Throws std::out_of_range for an unknown id.
const FindingKind& findingKind(std::string_view id);

struct Finding {
    const FindingKind* kind;
    std::vector<std::string> details;  // one line each
};

/// At most one finding for each id, in the order in which they were added.
class Findings {
public:
    /// Keeps the first 1000 details of an id, and 4000 bytes of each. Throws std::out_of_range for
    /// an unknown id.
    void add(std::string_view id, const std::string& detail = "");
    bool has(std::string_view id) const;
    const std::vector<Finding>& list() const { return m_list; }

private:
    std::vector<Finding> m_list;
};

}  // namespace corvane::check
