#include "core/controls/tree.h"

#include "core/base/storedText.h"

#include <algorithm>
#include <utility>

namespace veltrona {

NodeList::~NodeList() {
    if (m_capacity > 1)
        delete[] m_array;
}

void NodeList::reserve(qsizetype capacity) {
    if (capacity <= m_capacity)
        return;
    auto **array = new TreeNode *[static_cast<std::size_t>(capacity)];
    std::copy(begin(), end(), array);
    if (m_capacity > 1)
        delete[] m_array;
    m_array = array;
    m_capacity = static_cast<quint32>(capacity);
}

void NodeList::append(TreeNode *node) {
    if (m_size == m_capacity)
        reserve(2 * qsizetype(m_capacity));
    (m_capacity > 1 ? m_array[m_size] : m_single) = node;
    ++m_size;
}

QString TreeNode::name() const {
    return m_name ? textOf(*m_name) : QString();
}

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
    const std::size_t place = static_cast<std::size_t>(index) - 1;
    Q_ASSERT(place < m_count);
    return &m_chunks[place / chunkSize][place % chunkSize];
}

TreeNode *Nodes::Add(TreeNode *relative, TreeRelationship, const QString &key, const QString &text,
                     int image) {
    TreeNode *node = append(relative, image);
    node->setKey(key);
    node->setText(text);
    return node;
}

TreeNode *Nodes::addByName(TreeNode *relative, const NodeTexts &texts, const std::string_view &name,
                           int image) {
    TreeNode *node = append(relative, image);
    node->m_name = &name;
    node->m_texts = &texts;
    return node;
}

TreeNode *Nodes::append(TreeNode *parent, int image) {
    if (m_count % chunkSize == 0)
        m_chunks.push_back(std::make_unique<TreeNode[]>(chunkSize));
    TreeNode *node = &m_chunks.back()[m_count++ % chunkSize];
    node->Image = static_cast<qint16>(image);
    node->Parent = parent;
    if (parent) {
        node->IndexInParent = static_cast<int>(parent->Children.size());
        parent->Children.append(node);
    }
    return node;
}

void Nodes::Clear(TextDictionary names) {
    m_selected = nullptr;
    m_chunks.clear();
    m_count = 0;
    m_names = std::move(names);
}

void Tree::setSelectedItem(TreeNode *node) {
    m_nodes.m_selected = node;
    notify(onSelect);
}

} // namespace veltrona
