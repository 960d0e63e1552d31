#include "support/mainWindow.h"
#include "core/design/product.h"

#include "core/platform/services.h"
#include "core/shell/settings.h"
#include "support/gridText.h"
#include "support/testFolder.h"
#include "ui/shell/frmOptions.h"
#include "ui/views/controls/elidedLabel.h"

#include <QAction>
#include <QTest>
#include <QTreeView>

namespace veltrona::test {

MainWindow::MainWindow(const QDate &today) {
    QCoreApplication::setApplicationName(productName);
    qputenv("XDG_DATA_HOME", m_home.filePath("data").toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", m_home.filePath("config").toLocal8Bit());
    services().now = [today] { return QDateTime(today, QTime(12, 0)); };
}

MainWindow::~MainWindow() {
    close();
    services().now = Services().now;
}

bool MainWindow::start() {
    m_window = std::make_unique<frmMain>();
    if (!m_window->Form_Load())
        return false;
    m_window->show();
    return QTest::qWaitForWindowExposed(m_window.get());
}

void MainWindow::close() {
    if (!m_window)
        return;
    m_window->close();
    m_window.reset();
    // The hidden options dialog of this run must not stand loaded in the next one.
    if (frmOptions::instance().isLoaded())
        frmOptions::instance().done(0);
}

bool MainWindow::restart() {
    close();
    return start();
}

QString MainWindow::remembered() {
    QString value = "(none)";
    loadSetting(settingsKey, "dbfname", value);
    return value;
}

void MainWindow::remember(const QString &path) {
    saveSetting(settingsKey, "dbfname", path, textValue);
}

QString MainWindow::writeFile(const QString &name, const QByteArray &content) const {
    return write(file(name), content);
}

void MainWindow::command(const QString &action) {
    m_window->findChild<QAction *>(action)->trigger();
}

void MainWindow::importReport(const QString &path) {
    dialogs.expectFile(path);
    command("mnuImport");
}

void MainWindow::importRows(const QStringList &lines, const QStringList &columns) {
    importReport(writeFile("rows.xml", smallReport(lines, columns)));
}

TreeNode *MainWindow::node(const QStringList &texts) {
    TreeNode *node = m_window->treeList.Nodes().Item(1);
    for (const QString &text : texts) {
        const auto child = std::find_if(node->Children.begin(), node->Children.end(),
                                        [&](const TreeNode *n) { return n->Text() == text; });
        if (child == node->Children.end())
            return nullptr;
        node = *child;
    }
    return node;
}

void MainWindow::selectNode(const QStringList &texts) {
    auto *tree = view<QTreeView>("treeList");
    QModelIndex index = tree->model()->index(0, 0);
    TreeNode *wanted = m_window->treeList.Nodes().Item(1);
    for (int depth = 1; depth <= texts.size(); ++depth) {
        tree->expand(index);
        wanted = node(texts.first(depth));
        if (!wanted)
            qFatal("no node %s", qPrintable(texts.at(depth - 1)));
        index = tree->model()->index(wanted->IndexInParent, 0, index);
    }
    tree->scrollTo(index);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualRect(index).center());
    QTRY_COMPARE(m_window->treeList.SelectedItem(), wanted);
    QCoreApplication::processEvents();
}

namespace {
void dumpNode(const TreeNode &node, int level, QStringList &lines) {
    lines << QString(level * 2, u' ') + node.Text();
    for (const TreeNode *child : node.Children)
        dumpNode(*child, level + 1, lines);
}
} // namespace

QStringList MainWindow::treeDump() const {
    QStringList lines;
    dumpNode(*m_window->treeList.Nodes().Item(1), 0, lines);
    return lines;
}

QStringList MainWindow::gridDump() const {
    const Grid &grid = m_window->flxStat;
    QStringList lines;
    for (int row = 0; row < grid.Rows(); ++row)
        lines << rowText(grid, row, grid.Cols() - 2);
    return lines;
}

QStringList MainWindow::chartDump() const {
    QStringList lines;
    for (const ChartRow &row : m_window->mscMain.DataGrid().rows())
        lines << row.label + u'=' + QString::number(row.value);
    return lines;
}

QString MainWindow::caption() const {
    return m_window->findChild<ElidedLabel *>("lblSum")->fullText();
}

QStringList MainWindow::viewDump() const {
    return treeDump() + gridDump() + chartDump() + QStringList{caption()};
}

void WindowTest::init() {
    m_home = std::make_unique<MainWindow>();
    QVERIFY(m_home->start());
    prepare();
}

void WindowTest::cleanup() {
    m_home.reset();
}

} // namespace veltrona::test
