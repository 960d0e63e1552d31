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

/// The highest number of this user's unfinished jobs at the printer; 0 if there is none or no
/// server.
int newestJob(const QString &printer);

/// Cancels this user's unfinished jobs of that title with a higher number than `after`.
void withdrawJobs(const QString &printer, const QString &title, int after);

/// Throws Failure unless the server has accepted the job that Qt has just sent in this thread.
void requireTakenJob(const QString &printer);

} // namespace veltrona::desktop
