// The data of a tree control: nodes with the text fields Key, Text and Tag, in the order in which
// they were added, and one selected node. Fields that are set are stored; a node that was added by
// name stores the name alone and makes its fields when they are read: in a tree of a few hundred
// thousand nodes the names of all parents are in each Key.
#pragma once

#include <QString>
#include <QStringList>
#include <QVarLengthArray>

#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace veltrona {

class TreeNode;

/// Makes the fields of nodes that were added by name; must outlive the nodes.
struct NodeTexts {
    QString (*key)(const TreeNode &node);
    QString (*tag)(const TreeNode &node);
};

class TreeNode {
public:
    QString Key() const;
    const QString &Text() const { return m_set && m_set->text ? *m_set->text : m_name; }
    QString Tag() const;
    void setKey(const QString &key) { set().key = key; }
    void setText(const QString &text) { set().text = text; }
    void setTag(const QString &tag) { set().tag = tag; }

    /// What the node was added by; it is the Text too, unless another was set.
    const QString &name() const { return m_name; }

    int Image = 0;
    int IndexInParent = 0; // 0-based place among the parent's children
    bool Expanded = false;
    bool IsLoss = false; // shown with a mark
    TreeNode *Parent = nullptr;
    QVarLengthArray<TreeNode *, 1> Children; // a keyword mostly has a single type

private:
    friend class Nodes;
    struct SetTexts {
        std::optional<QString> key, text, tag;
    };
    SetTexts &set();

    QString m_name;
    const NodeTexts *m_texts = nullptr;
    std::unique_ptr<SetTexts> m_set;
};

/// What Nodes::Add does with its first argument.
enum class TreeRelationship { Child = 4 };

/// All nodes of a tree. Owns them; a pointer stays valid until Clear.
class Nodes {
public:
    int Count() const { return static_cast<int>(m_nodes.size()); }
    /// `index` counts from 1, in the order of adding.
    TreeNode *Item(int index) const;
    /// Adds a node after the other children of `relative`; null adds the root.
    TreeNode *Add(TreeNode *relative, TreeRelationship relationship, const QString &key,
                  const QString &text, int image);
    /// The same, with a name from which `texts` make Key and Tag.
    TreeNode *addByName(TreeNode *relative, const NodeTexts &texts, QString name, int image);
    /// Nothing is selected afterwards.
    void Clear();

private:
    friend class Tree;
    TreeNode *append(TreeNode *parent, QString name, int image);

    mutable std::deque<TreeNode> m_nodes;
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
