// A tree on screen. Takes the tree's onBeginRebuild, onEndRebuild and onSelect, and calls its
// onNodeClick; the tree must outlive the view. Arrow keys and typing count as clicks. A click is
// told once the waiting events are through, so that a held key tells its last node alone.
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

protected:
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
    void noteClick(TreeNode *node);
    void tellClick();
    void applyFont();

    Tree &m_tree;
    TreeModel *m_model;
    QTimer m_click;                     // runs while a click waits to be told
    bool m_showing = false;             // the program selects, not the user
    mutable bool m_onHighlight = false; // a branch of the selected row is being drawn
};

} // namespace veltrona
