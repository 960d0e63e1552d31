// Asks the CUPS server what Qt doesn't report: Qt sends a job without checking its result, and
// waits forever for a server that doesn't respond. Requests here time out after a few seconds.
#pragma once

#include <QString>

namespace veltrona::desktop {

/// Throws Failure if there is a print server that doesn't answer. Without a server one can still
/// print to a file.
void requireSpooler();

/// Throws Failure if the printer is stopped, takes no jobs, or can't be reached.
void requireReadyPrinter(const QString &printer);

/// Throws Failure unless the server has accepted the job that Qt has just sent in this thread.
void requireTakenJob(const QString &printer);

} // namespace veltrona::desktop
