// What the host tells the command: a JSON object in each line of a pipe.
#pragma once

#include <string>
#include <string_view>

/// Threads: any.
namespace corvane::check::report {

/// Once, at first. The plugin's own children don't get the pipe.
void open(int fd);
int fd();

/// What this thread does from now on; empty: nothing with the plugin.
void step(const std::string& what);
/// Only once, if it is told more often, and only the 1000 first.
void finding(std::string_view id, const std::string& detail);
void fact(std::string_view name, long long value);
void fact(std::string_view name, const std::string& value);

/// The plugin has gone through everything.
void done();

/// The exception that is being handled, in words.
std::string currentException();

}  // namespace corvane::check::report
