#pragma once

#include "shell/commandline.h"

// The commands of orv, one source file each. They return the exit code: 0 done, 1 for a negative
// finding such as an unknown code. Wrong use and unreadable input are thrown as Failure, which is 2.
Command checkCommand();
Command checksumCommand();
Command genreCommand();
Command inflateCommand();
Command jsonCommand();
Command languageCommand();
Command promptCommand();
Command sentencesCommand();
Command soundCommand();
Command tableCommand();
