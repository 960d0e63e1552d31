// A tree on screen. Sets the tree's onBeginRebuild, onEndRebuild, onSelect and onMarksChange, and
// calls its onNodeClick; the tree must outlive the view. Arrow keys and typing count as clicks. A
// click is reported once the pending events are processed, so that a held key reports its last node
// alone. Letters that are typed select the next node that contains them, once the typing pauses.
#pragma once

#include "core/controls/tree.h"

#include <QTimer>
#include <QTreeView>

namespace veltrona {

class TreeModel;

class TreeView : public QTreeView {
    Q_OBJECT
public:
    explicit TreeView(Tree &tree, QWidget *parent = nullptr);
    ~TreeView() override;

    /// The root's tooltip and its description for assistive software.
    void setRootDescription(const QString &description);
    void keyboardSearch(const QString &letters) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void mousePressEvent(QMouseEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void drawBranches(QPainter *painter, const QRect &rect,
                      const QModelIndex &index) const override;
    void initViewItemOption(QStyleOptionViewItem *option) const override;
    void selectionChanged(const QItemSelection &now, const QItemSelection &before) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;

private:
    void beginRebuild();
    void endRebuild();
    void showSelected();
    void acceptInputMethod();
    void find();
    void selectNextLoss();
    /// By key: the tooltip of the selected node.
    void explain();
    /// Below the selected node; screen readers say it.
    void showSentence(const QString &sentence);
    void openBelow(TreeNode *node);
    void noteClick(TreeNode *node);
    void notifyClick();
    void applyFont();
    void applyPalette();

    Tree &m_tree;
    TreeModel *m_model;
    QTimer m_click;  // runs while a click is pending
    QTimer m_typing; // runs while more letters may come
    QString m_letters;
    bool m_composing = false;           // an input method composes more of the letters
    bool m_showing = false;             // the program selects, not the user
    QPalette m_highlightPalette;        // with the texts of the selected row
    mutable bool m_onHighlight = false; // a branch of the selected row is being drawn
};

} // namespace veltrona
