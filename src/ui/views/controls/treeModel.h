// A tree as an item model. Reads the nodes by pointer and owns none of them. Between detach and
// attach it shows nothing, so that nodes can go and come.
#pragma once

#include "core/controls/tree.h"

#include <QAbstractItemModel>
#include <QIcon>

namespace veltrona {

class TreeModel : public QAbstractItemModel {
    Q_OBJECT
public:
    /// Whether a node carries the mark of a loss.
    static constexpr int LossRole = Qt::UserRole;

    explicit TreeModel(Tree &tree, QObject *parent = nullptr);

    void detach();
    void attach();

    void setRootDescription(const QString &description) { m_rootDescription = description; }

    TreeNode *nodeAt(const QModelIndex &index) const;
    QModelIndex indexOf(TreeNode *node) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    Tree &m_tree;
    TreeNode *m_root = nullptr;
    QIcon m_folder;
    QString m_rootDescription;
};

} // namespace veltrona
