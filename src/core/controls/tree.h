// The data behind a tree control: nodes with the text fields Key, Text and Tag, kept in the order
// in which they were added, and one selected node.
#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace veltrona {

struct TreeNode {
    QString Key;
    QString Text;
    QString Tag;
    int Image = 0;
    bool Expanded = false;
    TreeNode *Parent = nullptr;
    std::vector<TreeNode *> Children;
    int IndexInParent = 0; // 0-based place among the parent's children
};

/// What Nodes::Add does with its first argument.
enum class TreeRelationship { Child = 4 };

/// All nodes of a tree. Owns them; a pointer stays valid until Clear.
class Nodes {
public:
    int Count() const { return static_cast<int>(m_nodes.size()); }
    /// `index` counts from 1, in the order of adding.
    TreeNode *Item(int index) const;
    /// Adds a node behind the other children of `relative`; null adds the root.
    TreeNode *Add(TreeNode *relative, TreeRelationship relationship, const QString &key,
                  const QString &text, int image);
    void Clear();

private:
    friend class Tree;
    std::vector<std::unique_ptr<TreeNode>> m_nodes;
    std::function<void()> m_beforeClear;
};

class Tree {
public:
    Tree();
    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;

    veltrona::Nodes &Nodes() { return m_nodes; }
    const veltrona::Nodes &Nodes() const { return m_nodes; }

    /// Null while nothing is selected.
    TreeNode *SelectedItem() const { return m_selected; }
    /// Selects a node of this tree; tells the view, raises no click.
    void setSelectedItem(TreeNode *node);

    /// Brackets a rebuild: the view lets go of every node at the begin and reads anew at the end.
    void beginRebuild();
    void endRebuild();

    /// Set by the view.
    std::function<void()> onBeginRebuild;
    std::function<void()> onEndRebuild;
    std::function<void()> onSelect;
    /// Set by the window: the user clicked a node or moved to it by key.
    std::function<void(TreeNode *)> onNodeClick;

private:
    veltrona::Nodes m_nodes;
    TreeNode *m_selected = nullptr;
};

} // namespace veltrona
