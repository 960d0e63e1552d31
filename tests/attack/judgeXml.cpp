// Says of each file that standard input names, a path a line, whether it is read as well-formed
// XML.
#include "core/platform/xml/document.h"

#include <cstdio>
#include <iostream>
#include <string>

using veltrona::xml::Document;

int main() {
    for (std::string path; std::getline(std::cin, path);) {
        Document document;
        const bool isRead = document.load(QString::fromStdString(path));
        const veltrona::xml::ParseError &error = document.parseError();
        const QString told = isRead ? document.refusal()
                                    : QStringLiteral("%1:%2 at byte %3: %4 [%5]")
                                          .arg(error.line)
                                          .arg(error.linepos)
                                          .arg(error.filepos)
                                          .arg(error.reason.trimmed(), error.srcText);
        std::printf("%s\t%s\n", isRead ? "read" : "refused", qUtf8Printable(told));
    }
    return 0;
}
