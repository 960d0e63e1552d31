#include "ui/views/controls/treeView.h"

#include "core/base/text.h"
#include "ui/views/controls/itemDelegates.h"
#include "ui/views/controls/treeModel.h"
#include "ui/views/icons.h"
#include "ui/views/menuEntry.h"
#include "ui/views/plainText.h"

#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QToolTip>

namespace veltrona {

namespace {

/// The node after `node` in the order of a fully expanded tree; the root after the last.
TreeNode *nextOf(TreeNode *node) {
    if (!node->Children.empty())
        return node->Children.front();
    for (; node->Parent; node = node->Parent) {
        const qsizetype next = node->IndexInParent + 1;
        if (next < node->Parent->Children.size())
            return node->Parent->Children[next];
    }
    return node;
}

} // namespace

TreeView::TreeView(Tree &tree, QWidget *parent)
    : QTreeView(parent), m_tree(tree), m_model(new TreeModel(tree, this)) {
    m_click.setSingleShot(true);
    m_click.setInterval(0);
    connect(&m_click, &QTimer::timeout, this, &TreeView::notifyClick);

    m_typing.setSingleShot(true);
    m_typing.setInterval(QApplication::keyboardInputInterval());
    connect(&m_typing, &QTimer::timeout, this, &TreeView::find);

    setItemDelegate(newTreeDelegate(this));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    applyFont();
    applyPalette();
    setVerticalScrollMode(ScrollPerPixel);
    setModel(m_model);
    // The flag lives in the node, so that it outlasts the view's own bookkeeping.
    connect(this, &QTreeView::expanded, this,
            [this](const QModelIndex &index) { m_model->nodeAt(index)->Expanded = true; });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex &index) { m_model->nodeAt(index)->Expanded = false; });

    addEntry(*this, "Next Loss", {QKeySequence(Qt::Key_F8)}, [this] { selectNextLoss(); });
    addExplainEntry(*this, [this] { explain(); });

    m_tree.onBeginRebuild = [this] { beginRebuild(); };
    m_tree.onEndRebuild = [this] { endRebuild(); };
    m_tree.onSelect = [this] { showSelected(); };
    m_tree.onMarksChange = [this] { viewport()->update(); };
    endRebuild();
}

TreeView::~TreeView() {
    m_tree.onBeginRebuild = nullptr;
    m_tree.onEndRebuild = nullptr;
    m_tree.onSelect = nullptr;
    m_tree.onMarksChange = nullptr;
}

void TreeView::beginRebuild() {
    m_click.stop(); // its node is about to go
    m_typing.stop();
    const QScopedValueRollback showing(m_showing, true);
    m_model->detach();
}

void TreeView::endRebuild() {
    {
        const QScopedValueRollback showing(m_showing, true);
        m_model->attach();
    }
    const Nodes &nodes = m_tree.Nodes();
    for (int item = 1; item <= nodes.Count(); ++item) {
        TreeNode *node = nodes.Item(item);
        if (node->Expanded)
            expand(m_model->indexOf(node));
    }
    showSelected();
}

void TreeView::showSelected() {
    const QScopedValueRollback showing(m_showing, true);
    const QModelIndex index = m_model->indexOf(m_tree.SelectedItem());
    if (index.isValid())
        setCurrentIndex(index);
    else
        clearSelection();
}

void TreeView::mousePressEvent(QMouseEvent *event) {
    QTreeView::mousePressEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    const bool onItem = visualRect(index).contains(event->position().toPoint());
    // A press that selects another node has been noted already; this is for the selected one.
    if (event->button() == Qt::LeftButton && index.isValid() && onItem)
        noteClick(m_model->nodeAt(index));
}

void TreeView::selectionChanged(const QItemSelection &now, const QItemSelection &before) {
    QTreeView::selectionChanged(now, before);
    if (m_showing)
        return;
    const QModelIndexList selected = selectedIndexes();
    if (selected.isEmpty())
        QMetaObject::invokeMethod(this, &TreeView::showSelected, Qt::QueuedConnection);
    else
        noteClick(m_model->nodeAt(selected.first()));
}

// No key or button takes the selection away.
QItemSelectionModel::SelectionFlags TreeView::selectionCommand(const QModelIndex &index,
                                                               const QEvent *) const {
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

void TreeView::setRootDescription(const QString &description) {
    m_model->setRootDescription(description);
}

void TreeView::keyPressEvent(QKeyEvent *event) {
    const QString text = event->text();
    const bool isLetter = !text.isEmpty() && text.front().isPrint() &&
                          !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    // Within a word the keys that open and close nodes are letters like any other.
    if (m_typing.isActive() && isLetter)
        keyboardSearch(text);
    else if (event->key() == Qt::Key_Asterisk && currentIndex().isValid())
        openBelow(m_model->nodeAt(currentIndex()));
    else if (m_typing.isActive() && event->key() == Qt::Key_Return)
        find();
    else
        QTreeView::keyPressEvent(event);
}

/// Opens as many levels as a window can show without a pause, the first one always.
void TreeView::openBelow(TreeNode *node) {
    constexpr std::size_t mostRows = 5000;
    std::size_t rows = 0;
    for (std::vector<TreeNode *> level{node}; !level.empty();) {
        std::vector<TreeNode *> below;
        for (const TreeNode *each : level)
            below.insert(below.end(), each->Children.begin(), each->Children.end());
        rows += below.size();
        if (rows > mostRows && level.front() != node)
            return;
        for (TreeNode *each : level)
            expand(m_model->indexOf(each));
        level = std::move(below);
    }
}

void TreeView::keyboardSearch(const QString &letters) {
    if (!m_typing.isActive() && !m_composing)
        m_letters.clear();
    m_letters += letters;
    m_typing.start();
}

/// Qt switches input methods off for nodes, which can't be edited.
void TreeView::acceptInputMethod() {
    setAttribute(Qt::WA_InputMethodEnabled);
}

void TreeView::focusInEvent(QFocusEvent *event) {
    QTreeView::focusInEvent(event);
    acceptInputMethod();
}

void TreeView::currentChanged(const QModelIndex &current, const QModelIndex &previous) {
    QTreeView::currentChanged(current, previous);
    acceptInputMethod();
}

QVariant TreeView::inputMethodQuery(Qt::InputMethodQuery query) const {
    return query == Qt::ImEnabled ? true : QTreeView::inputMethodQuery(query);
}

/// Composed letters are searched for like typed ones. What is being composed is shown beside the
/// node; between two parts of a name the search waits.
void TreeView::inputMethodEvent(QInputMethodEvent *event) {
    const QString &composed = event->preeditString();
    if (!event->commitString().isEmpty())
        keyboardSearch(event->commitString());
    else if (m_composing && composed.isEmpty())
        m_typing.start();
    m_composing = !composed.isEmpty() && (m_composing || m_typing.isActive());
    if (m_composing)
        m_typing.stop();
    QToolTip::showText(viewport()->mapToGlobal(visualRect(currentIndex()).topRight()),
                       plainToolTip(composed), viewport());
    event->accept();
}

void TreeView::find() {
    m_typing.stop();
    TreeNode *start = m_tree.SelectedItem();
    if (!start || m_letters.trimmed().isEmpty())
        return;
    TreeNode *node = nextOf(start);
    while (node != start && !node->Text().contains(m_letters, Qt::CaseInsensitive))
        node = nextOf(node);
    if (node != start)
        noteClick(node);
    else if (!node->Text().contains(m_letters, Qt::CaseInsensitive))
        showSentence(QStringLiteral("No name here contains \"%1\".").arg(m_letters));
}

void TreeView::selectNextLoss() {
    m_typing.stop();
    if (TreeNode *node = m_tree.nextLoss ? m_tree.nextLoss() : nullptr)
        noteClick(node);
    else
        showSentence(QStringLiteral("No part of the account lost money in this period."));
}

void TreeView::explain() {
    constexpr int maxName = 1000; // leaves room for the note
    const QModelIndex node = currentIndex();
    const QString note = node.data(Qt::ToolTipRole).toString();
    showSentence(shortened(node.data().toString(), maxName) +
                 (note.isEmpty() ? note : u'\n' + note));
}

void TreeView::showSentence(const QString &sentence) {
    answerByKey(*viewport(), visualRect(currentIndex()), sentence);
}

void TreeView::noteClick(TreeNode *node) {
    m_typing.stop();
    const QScopedValueRollback showing(m_showing, true);
    m_tree.setSelectedItem(node);
    m_click.start();
}

void TreeView::notifyClick() {
    if (m_tree.onNodeClick && m_tree.SelectedItem())
        m_tree.onNodeClick(m_tree.SelectedItem());
}

void TreeView::applyFont() {
    const int picture = smallIconPixels(fontMetrics());
    setIconSize({picture, picture});
}

void TreeView::changeEvent(QEvent *event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        applyFont();
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
}

// Made once for all arrows: Qt keeps pictures of arrows for each palette that it has met.
void TreeView::applyPalette() {
    m_highlightPalette = palette();
    for (const QPalette::ColorGroup group :
         {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText})
            m_highlightPalette.setBrush(group, role,
                                        palette().brush(group, QPalette::HighlightedText));
    }
}

// The arrow of the selected row stands on the highlight, like its text.
void TreeView::drawBranches(QPainter *painter, const QRect &rect, const QModelIndex &index) const {
    const QScopedValueRollback onHighlight(m_onHighlight, selectionModel()->isSelected(index));
    QTreeView::drawBranches(painter, rect, index);
}

void TreeView::initViewItemOption(QStyleOptionViewItem *option) const {
    QTreeView::initViewItemOption(option);
    if (!m_onHighlight)
        return;
    const QPalette::ColorGroup group = option->palette.currentColorGroup();
    option->palette = m_highlightPalette;
    option->palette.setCurrentColorGroup(group);
}

bool TreeView::viewportEvent(QEvent *event) {
    if (event->type() != QEvent::ToolTip)
        return QTreeView::viewportEvent(event);
    constexpr int margins = 10; // around icon and text
    showToolTip(*this, *static_cast<QHelpEvent *>(event), iconSize().width() + margins);
    return true;
}

} // namespace veltrona
