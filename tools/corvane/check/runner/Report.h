// Sends messages to the command: a JSON object on each line of a pipe.
#pragma once

#include <string>
#include <string_view>

/// Threads: any.
namespace corvane::check::report {

/// Sets the descriptor of the pipe, before all other functions. The plugin's children don't inherit
/// it.
void open(int fd);
int fd();

/// Names what this thread does with the plugin from now on; empty: nothing.
void step(const std::string& what);
/// Sends each pair of id and detail once, and at most 1000 of them.
void finding(std::string_view id, const std::string& detail);
void fact(std::string_view name, long long value);
void fact(std::string_view name, const std::string& value);

/// Reports that all steps are completed.
void done();

/// Describes the exception that is being handled.
std::string currentException();

}  // namespace corvane::check::report
