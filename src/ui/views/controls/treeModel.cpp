#include "ui/views/controls/treeModel.h"

#include "ui/views/icons.h"
#include "ui/views/plainText.h"

namespace veltrona {

TreeModel::TreeModel(Tree &tree, QObject *parent)
    : QAbstractItemModel(parent), m_tree(tree), m_folder(icon("folder")) {
    attach();
}

void TreeModel::detach() {
    beginResetModel();
    m_root = nullptr;
    endResetModel();
}

void TreeModel::attach() {
    beginResetModel();
    m_root = m_tree.Nodes().Count() > 0 ? m_tree.Nodes().Item(1) : nullptr;
    endResetModel();
}

TreeNode *TreeModel::nodeAt(const QModelIndex &index) const {
    return index.isValid() ? static_cast<TreeNode *>(index.internalPointer()) : nullptr;
}

QModelIndex TreeModel::indexOf(TreeNode *node) const {
    return node && m_root ? createIndex(node->IndexInParent, 0, node) : QModelIndex();
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex &parent) const {
    if (column != 0 || row < 0 || row >= rowCount(parent))
        return {};
    const TreeNode *above = nodeAt(parent);
    return createIndex(row, 0, above ? above->Children[row] : m_root);
}

QModelIndex TreeModel::parent(const QModelIndex &index) const {
    const TreeNode *node = nodeAt(index);
    return node && node->Parent ? indexOf(node->Parent) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex &parent) const {
    if (const TreeNode *node = nodeAt(parent))
        return static_cast<int>(node->Children.size());
    return m_root ? 1 : 0;
}

int TreeModel::columnCount(const QModelIndex &) const {
    return 1;
}

QVariant TreeModel::data(const QModelIndex &index, int role) const {
    const TreeNode *node = nodeAt(index);
    if (!node)
        return {};
    if (role == Qt::DisplayRole)
        return node->Text();
    if (role == Qt::DecorationRole)
        return m_folder;
    if (role == LossRole)
        return node->IsLoss;
    if (role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole) {
        QStringList lines;
        if (node == m_root && !m_rootDescription.isEmpty())
            lines.append(m_rootDescription);
        if (m_tree.notesOf)
            lines += m_tree.notesOf(*node);
        const QString text = lines.join(u'\n');
        return role == Qt::ToolTipRole ? text : spokenText(text);
    }
    // Screen readers would read nothing for an empty text.
    if (role == Qt::AccessibleTextRole && node->Text().isEmpty())
        return QStringLiteral("(no name)");
    return {};
}

} // namespace veltrona
