#include "core/controls/tree.h"

namespace veltrona {

TreeNode *Nodes::Item(int index) const {
    return m_nodes.at(static_cast<std::size_t>(index - 1)).get();
}

TreeNode *Nodes::Add(TreeNode *relative, TreeRelationship, const QString &key, const QString &text,
                     int image) {
    auto node = std::make_unique<TreeNode>();
    node->Key = key;
    node->Text = text;
    node->Image = image;
    node->Parent = relative;
    if (relative) {
        node->IndexInParent = static_cast<int>(relative->Children.size());
        relative->Children.push_back(node.get());
    }
    m_nodes.push_back(std::move(node));
    return m_nodes.back().get();
}

void Nodes::Clear() {
    if (m_beforeClear)
        m_beforeClear();
    m_nodes.clear();
}

Tree::Tree() {
    m_nodes.m_beforeClear = [this] { m_selected = nullptr; };
}

void Tree::setSelectedItem(TreeNode *node) {
    m_selected = node;
    if (onSelect)
        onSelect();
}

void Tree::beginRebuild() {
    if (onBeginRebuild)
        onBeginRebuild();
}

void Tree::endRebuild() {
    if (onEndRebuild)
        onEndRebuild();
}

} // namespace veltrona
