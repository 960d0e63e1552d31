// The guided tour through the real main window: the steps, and what must be seen at each.
#pragma once

#include "tour/standIns.h"
#include "ui/shell/frmMain.h"

namespace veltrona::tour {

class Tour {
public:
    /// Imports `reportFile`, leaves pictures and files in `folder`.
    Tour(const QString &reportFile, const QString &folder);
    ~Tour();
    Tour(const Tour &) = delete;
    Tour &operator=(const Tour &) = delete;

    /// Starts the program, leads through it and ends it; whether all went well.
    bool run();

    QStringList files() const { return m_guide.files(); }
    /// The statistics of the whole account over the whole time.
    QString gridText() const { return m_gridText; }

private:
    void planImport();
    void planRange();
    void planTree();
    void planChart();
    void planOptions();
    void planExport();
    void planPrint();
    void planLeave();

    frmMain &window() const;
    /// Steps that wait for a window to be in front, or for a menu or list to be open.
    void at(const QString &name, std::function<void()> action);
    void atMain(std::function<void()> action);
    void atPopup(std::function<void()> action);
    /// Chooses from a drop-down list by clicking it open and typing.
    void choose(const QString &combo, const QString &text);

    void enlarge();
    void clickTool(const QString &name);
    void clickRoot();
    /// Moves down in the tree with the arrow key.
    void walkDownTo(const QString &text);
    void photographWait();
    void requireFigures(const QString &where);
    void keepFile(const QString &path);

    Guide m_guide;
    TourDialogs m_dialogs;
    TourPrinting m_printing;
    QString m_gridText;
    bool m_sawWait = false;
};

} // namespace veltrona::tour
