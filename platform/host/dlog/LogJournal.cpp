// Sends records to the journal.
#define SD_JOURNAL_SUPPRESS_LOCATION  // the place in this file is of no interest
#include "LogJournal.h"

#include <dlog.h>
#include <sys/uio.h>
#include <syslog.h>
#include <systemd/sd-journal.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace corvane::host {

namespace {

struct Location {
    std::string_view file;
    std::string_view function;
    std::string_view line;
};

int journalPriority(int priority) {
    switch (priority) {
        case DLOG_PRIORITY_DEBUG:
            return LOG_DEBUG;
        case DLOG_PRIORITY_INFO:
            return LOG_INFO;
        case DLOG_PRIORITY_WARNING:
            return LOG_WARNING;
        default:
            return priority < DLOG_PRIORITY_DEBUG ? LOG_DEBUG : LOG_ERR;
    }
}

bool isWord(std::string_view text) {
    return !text.empty() && text.find_first_of(" \t\n") == text.npos;
}

bool isNumber(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

std::optional<Location> findLocation(std::string_view text) {
    const auto colon = text.find(": ");
    const auto end = text.find(") > ");
    if (colon == text.npos || end == text.npos || end < colon + 2) {
        return std::nullopt;
    }
    const auto place = text.substr(colon + 2, end - colon - 2);
    const auto parenthesis = place.rfind('(');
    if (parenthesis == place.npos) {
        return std::nullopt;
    }
    const Location location{text.substr(0, colon), place.substr(0, parenthesis),
                            place.substr(parenthesis + 1)};
    if (!isWord(location.file) || !isWord(location.function) || !isNumber(location.line)) {
        return std::nullopt;
    }
    return location;
}

class Fields {
public:
    void add(const char* name, std::string_view value) {
        m_texts[m_count] = std::string(name) + '=';
        m_texts[m_count].append(value);
        ++m_count;
    }

    int send() {
        std::array<iovec, maximum> vectors{};
        for (std::size_t i = 0; i < m_count; ++i) {
            vectors[i] = {m_texts[i].data(), m_texts[i].size()};
        }
        return sd_journal_sendv(vectors.data(), static_cast<int>(m_count));
    }

private:
    static constexpr std::size_t maximum = 6;
    std::array<std::string, maximum> m_texts;
    std::size_t m_count = 0;
};

}  // namespace

int sendToJournal(int priority, const char* tag, std::string_view text) {
    Fields fields;
    fields.add("MESSAGE", text);
    fields.add("PRIORITY", std::to_string(journalPriority(priority)));
    fields.add("SYSLOG_IDENTIFIER", tag == nullptr ? "" : tag);
    if (const auto location = findLocation(text)) {
        fields.add("CODE_FILE", location->file);
        fields.add("CODE_LINE", location->line);
        fields.add("CODE_FUNC", location->function);
    }
    return fields.send();
}

}  // namespace corvane::host
