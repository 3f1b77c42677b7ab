// Compares complete logs of the daemon with files. If CORVANE_UPDATE_TRANSCRIPTS is set in the
// environment, the files are rewritten instead. Use `script/test --update-transcripts` after an
// intended change of the log.
#pragma once

#include <string>

/// Fails the test unless `seen` equals the content of `directory`/`name`.txt.
void expectTranscript(const std::string& directory, const std::string& name,
                      const std::string& seen);
