// The print server, asked by its own library for what the toolkit doesn't tell: it hands a job over
// without a look at what becomes of it, and waits without end for a server that is silent. Each
// question here is given up after a few seconds without an answer.
#pragma once

#include <QString>

namespace veltrona::desktop {

/// Throws Failure where there is a print server that doesn't answer. Without any server files can
/// still be printed to.
void requireSpooler();

/// Throws Failure where the printer is stopped, takes no jobs, or can't be asked.
void requireReadyPrinter(const QString &printer);

/// Throws Failure unless the server has taken the job that the toolkit has just sent in this
/// thread.
void requireTakenJob(const QString &printer);

} // namespace veltrona::desktop
