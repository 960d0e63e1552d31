// The data of a tree control: nodes with the text fields Key, Text and Tag, in the order in which
// they were added, and one selected node. Fields that are set are stored; a node that was added by
// name makes its fields when they are read: in a tree of a few hundred thousand nodes the names of
// all parents are in each Key. Nodes are small, since a tree may have millions.
#pragma once

#include "core/base/textDictionary.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace veltrona {

class TreeNode;

/// Makes the fields of nodes that were added by name; must outlive the nodes.
struct NodeTexts {
    QString (*key)(const TreeNode &node);
    QString (*tag)(const TreeNode &node);
};

/// The children of a node, in order. A single one, as most keywords have, needs no array.
class NodeList {
public:
    NodeList() = default;
    ~NodeList();
    Q_DISABLE_COPY_MOVE(NodeList)

    TreeNode *const *begin() const { return m_capacity > 1 ? m_array : &m_single; }
    TreeNode *const *end() const { return begin() + m_size; }
    bool empty() const { return m_size == 0; }
    qsizetype size() const { return m_size; }
    TreeNode *operator[](qsizetype index) const { return begin()[index]; }
    TreeNode *front() const { return *begin(); }
    TreeNode *back() const { return *(end() - 1); }

    void reserve(qsizetype capacity);
    void append(TreeNode *node);

private:
    union {
        TreeNode *m_single = nullptr;
        TreeNode **m_array;
    };
    quint32 m_size = 0;
    quint32 m_capacity = 1;
};

class TreeNode {
public:
    QString Key() const;
    QString Text() const { return m_set && m_set->text ? *m_set->text : name(); }
    QString Tag() const;
    void setKey(const QString &key) { set().key = key; }
    void setText(const QString &text) { set().text = text; }
    void setTag(const QString &tag) { set().tag = tag; }

    /// What the node was added by; it is the Text too, unless another was set.
    QString name() const;

    TreeNode *Parent = nullptr;
    NodeList Children;
    int IndexInParent = 0; // 0-based place among the parent's children
    qint16 Image = 0;
    bool Expanded = false;
    bool IsLoss = false; // shown with a mark

private:
    friend class Nodes;
    struct SetTexts {
        std::optional<QString> key, text, tag;
    };
    SetTexts &set();

    const std::string_view *m_name = nullptr;
    const NodeTexts *m_texts = nullptr;
    std::unique_ptr<SetTexts> m_set;
};
/// Without its texts: the node and its place among the children of its parent.
inline constexpr std::size_t bytesOfNode = sizeof(TreeNode) + sizeof(void *);
static_assert(bytesOfNode <= 64);

/// What Nodes::Add does with its first argument.
enum class TreeRelationship { Child = 4 };

/// All nodes of a tree. Owns them; a pointer stays valid until Clear.
class Nodes {
public:
    int Count() const { return static_cast<int>(m_count); }
    /// `index` counts from 1, in the order of adding.
    TreeNode *Item(int index) const;
    /// Adds a node after the other children of `relative`; null adds the root.
    TreeNode *Add(TreeNode *relative, TreeRelationship relationship, const QString &key,
                  const QString &text, int image);
    /// The same, with a name as the table stores it, from which `texts` make Key and Tag. The name
    /// isn't copied: it is one of `names()`, or outlives the nodes.
    TreeNode *addByName(TreeNode *relative, const NodeTexts &texts, const std::string_view &name,
                        int image);
    /// Nothing is selected afterwards. Takes the names of the nodes to come.
    void Clear(TextDictionary names = {});
    const TextDictionary &names() const { return m_names; }

private:
    friend class Tree;
    TreeNode *append(TreeNode *parent, int image);

    static constexpr std::size_t chunkSize = 1024;
    TextDictionary m_names;
    std::vector<std::unique_ptr<TreeNode[]>> m_chunks;
    std::size_t m_count = 0;
    TreeNode *m_selected = nullptr;
};

class Tree {
public:
    Tree() = default;
    Q_DISABLE_COPY_MOVE(Tree)

    veltrona::Nodes &Nodes() { return m_nodes; }
    const veltrona::Nodes &Nodes() const { return m_nodes; }

    /// Null while nothing is selected.
    TreeNode *SelectedItem() const { return m_nodes.m_selected; }
    /// Selects a node of this tree; notifies the view, raises no click.
    void setSelectedItem(TreeNode *node);

    /// Brackets a rebuild: the view drops every node at the begin and reads anew at the end.
    void beginRebuild() { notify(onBeginRebuild); }
    void endRebuild() { notify(onEndRebuild); }
    /// To be called when marks of nodes have changed.
    void marksChanged() { notify(onMarksChange); }

    /// Set by the view.
    std::function<void()> onBeginRebuild;
    std::function<void()> onEndRebuild;
    std::function<void()> onSelect;
    std::function<void()> onMarksChange;
    /// Set by the window: the user clicked a node or moved to it by key.
    std::function<void(TreeNode *)> onNodeClick;
    /// Set by the window: the lines that explain a node; called when they are about to be shown.
    std::function<QStringList(const TreeNode &)> notesOf;
    /// Set by the window: the next node that loses money after the selected one, or null.
    std::function<TreeNode *()> nextLoss;

private:
    static void notify(const std::function<void()> &view) {
        if (view)
            view();
    }

    veltrona::Nodes m_nodes;
};

} // namespace veltrona
