// The numbers of the failures that no other component numbers: those of projects are SQLite's own
// for the like, those of reports the ones that a user of such a program knows.
#pragma once

namespace veltrona {

enum FailureNumber : int {
    noSuchPage = 0,
    tooManyRows = 6,
    damagedProject = 11,
    unreadableReport = 13,
    newerProject = 17,
    unreadableDate = 20,
    noProject = 26,
    changedReport = 75,
    movedProject = 1032,
};

} // namespace veltrona
