// Sends records to the journal.
#define SD_JOURNAL_SUPPRESS_LOCATION  // the place in this file is of no interest
#include "platform/host/dlog/LogJournal.h"

#include <dlog.h>
#include <sys/uio.h>
#include <syslog.h>
#include <systemd/sd-journal.h>

#include <array>
#include <cstddef>
#include <string>

namespace corvane::host {

namespace {

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

int sendToJournal(int priority, const char* tag, std::string_view text, const LogPlace& place) {
    Fields fields;
    fields.add("MESSAGE", text);
    fields.add("PRIORITY", std::to_string(journalPriority(priority)));
    fields.add("SYSLOG_IDENTIFIER", tag == nullptr ? "" : tag);
    if (place.file != nullptr && place.function != nullptr) {
        fields.add("CODE_FILE", place.file);
        fields.add("CODE_LINE", std::to_string(place.line));
        fields.add("CODE_FUNC", place.function);
    }
    return fields.send();
}

}  // namespace corvane::host
