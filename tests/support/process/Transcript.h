// Compares complete logs of the daemon with files. If CORVANE_UPDATE_TRANSCRIPTS is set in the
// environment, the files are rewritten instead. Use `script/test --update-transcripts` after an
// intended change of the log.
#pragma once

#include <string>

/// Fails the test unless `seen` equals the content of `directory`/`name`.txt. The files contain the
/// type of std::size_t on 64-bit machines.
void expectTranscript(const std::string& directory, const std::string& name,
                      const std::string& seen);
