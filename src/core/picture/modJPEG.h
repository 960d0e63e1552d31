// Turns a loaded picture into a JPEG file, and puts the codec's results into words.
#pragma once

#include "core/picture/cJPEG.h"

#include <QString>

namespace veltrona::modJPEG {

/// `quality` runs from 1 to 100, `prompt` asks before a file is replaced. False with number and
/// text where the file wasn't written; an older file of that name is gone then, unless no picture
/// was loaded. An answer of No is true. `reason`, if wanted, gets the words of library or system.
bool saveJPEG(const cJPEG &picture, const QString &FileName, std::int32_t quality, bool prompt,
              std::int32_t &errNumber, QString &errDescription, QString *reason = nullptr);

QString ijlErrorText(std::int32_t code);

} // namespace veltrona::modJPEG
