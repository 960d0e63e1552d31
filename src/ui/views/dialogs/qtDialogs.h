// Message boxes and file dialogs of Qt, over the window in use.
#pragma once

#include "core/platform/dialogs/dialogs.h"

class QFileDialog;

namespace veltrona {

class QtDialogs : public Dialogs {
public:
    /// Folders that Qt's file dialogs offer in their side bar, besides its own.
    using Places = std::function<QStringList()>;
    explicit QtDialogs(Places places = {}) : m_places(std::move(places)) {}

    Answer message(MessageStyle style, const QString &title, const QString &text,
                   const QString &details = {}) override;
    int choose(const QString &title, const QString &text, const QStringList &buttons) override;
    QString openFile(const FileDialogSetup &setup) override;
    QString saveFile(const FileDialogSetup &setup) override;

private:
    void setUp(QFileDialog &dialog, const FileDialogSetup &setup) const;

    Places m_places;
};

/// "XML files (*.xml)|*.xml" and its like in the form of Qt's filters.
QString qtFilter(const QString &filter);

/// `name` with the extension appended, unless it ends in it in any case.
QString withExtension(const QString &name, const QString &extension);

/// CR, CRLF and LF all break the line.
QString withLineBreaks(const QString &text);

} // namespace veltrona
