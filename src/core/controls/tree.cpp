#include "core/controls/tree.h"

#include <utility>

namespace veltrona {

QString TreeNode::Key() const {
    if (m_set && m_set->key)
        return *m_set->key;
    return m_texts ? m_texts->key(*this) : QString();
}

QString TreeNode::Tag() const {
    if (m_set && m_set->tag)
        return *m_set->tag;
    return m_texts ? m_texts->tag(*this) : QString();
}

TreeNode::SetTexts &TreeNode::set() {
    if (!m_set)
        m_set = std::make_unique<SetTexts>();
    return *m_set;
}

TreeNode *Nodes::Item(int index) const {
    return &m_nodes.at(static_cast<std::size_t>(index - 1));
}

TreeNode *Nodes::Add(TreeNode *relative, TreeRelationship, const QString &key, const QString &text,
                     int image) {
    TreeNode *node = append(relative, text, image);
    node->setKey(key);
    return node;
}

TreeNode *Nodes::addByName(TreeNode *relative, const NodeTexts &texts, QString name, int image) {
    TreeNode *node = append(relative, std::move(name), image);
    node->m_texts = &texts;
    return node;
}

TreeNode *Nodes::append(TreeNode *parent, QString name, int image) {
    TreeNode *node = &m_nodes.emplace_back();
    node->m_name = std::move(name);
    node->Image = image;
    node->Parent = parent;
    if (parent) {
        node->IndexInParent = static_cast<int>(parent->Children.size());
        parent->Children.push_back(node);
    }
    return node;
}

void Nodes::Clear() {
    m_selected = nullptr;
    m_nodes.clear();
}

void Tree::setSelectedItem(TreeNode *node) {
    m_nodes.m_selected = node;
    notify(onSelect);
}

} // namespace veltrona
