// Saves a loaded picture as a JPEG file, and words the codec's results.
#pragma once

#include "core/picture/cJPEG.h"

#include <QString>

namespace veltrona::modJPEG {

/// `quality` is from 1 to 100, `prompt` asks before a file is replaced. False with number and text
/// if the file wasn't written; an older file of that name is deleted then, unless no picture was
/// loaded. True if the answer is No. `reason`, if given, is set to the text of libjpeg or the
/// system. With a `handle` the open file is written to, and the name isn't looked at.
bool saveJPEG(const cJPEG &picture, const QString &FileName, std::int32_t quality, bool prompt,
              std::int32_t &errNumber, QString &errDescription, QString *reason = nullptr,
              int handle = -1);

QString ijlErrorText(std::int32_t code);

} // namespace veltrona::modJPEG
