// Complete logs of the daemon that tests compare with files. With CORVANE_UPDATE_TRANSCRIPTS=1 in
// the environment the files are rewritten instead, which `script/test --update-transcripts` does
// after a wanted change of the log.
#pragma once

#include <string>

/// Fails the test unless `seen` is the text of `directory`/`name`.txt.
void expectTranscript(const std::string& directory, const std::string& name,
                      const std::string& seen);
