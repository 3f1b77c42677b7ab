/*
 * The platform's log: a record has a log buffer, a priority, a tag and a formatted
 * text. Both functions may be called on any thread, never throw, and keep no pointer
 * to their arguments.
 */
#ifndef PLATFORM_DLOG_H
#define PLATFORM_DLOG_H

#ifdef __cplusplus
extern "C" {
#endif

enum dlog_buffer_e { DLOG_BUFFER_MAIN = 0 };

enum dlog_priority_e {
    DLOG_PRIORITY_DEBUG = 3,
    DLOG_PRIORITY_INFO = 4,
    DLOG_PRIORITY_WARNING = 5,
    DLOG_PRIORITY_ERROR = 6,
};

/* Writes to the buffer `log_id`. Returns the number of bytes of the text, or a negative error. */
int __dlog_print(int log_id, int prio, const char* tag, const char* fmt, ...)
    __attribute__((format(printf, 4, 5)));

/* Writes to the main buffer, otherwise the same. */
int dlog_print(int prio, const char* tag, const char* fmt, ...)
    __attribute__((format(printf, 3, 4)));

#ifdef __cplusplus
}
#endif

#endif
