// Changes a project as a crafted one would differ: fields of its header, cells and pointers of its
// B-tree pages, the list of free pages, chains of overflow pages, and pages in a log. Changes of
// single bytes seldom leave a file that SQLite reads that far. The input is that of projectAttack.
#include "attack/projectInput.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <initializer_list>
#include <iterator>
#include <random>

extern "C" std::size_t LLVMFuzzerMutate(unsigned char *data, std::size_t size, std::size_t maxSize);

using veltrona::attack::ProjectInput;

namespace {

/// Pages count from 0 here, and from 1 in the file.
class Pages {
public:
    Pages(QByteArray bytes, unsigned seed) : m_bytes(std::move(bytes)), m_random(seed) {
        const quint32 size = get(16, 2);
        m_size = std::has_single_bit(size) && size >= 512 ? size : size == 1 ? 65536 : 512;
        m_count = static_cast<quint32>(m_bytes.size()) / m_size;
    }
    bool isEmpty() const { return m_count == 0; }
    const QByteArray &bytes() const { return m_bytes; }
    void change();
    /// A log whose frames are some of the pages; it is committed.
    QByteArray toLog();

private:
    struct Tree { // a page of a B-tree
        quint32 page, header, pointers, count;
        bool isInner;
    };

    void changeHeader();
    void changeTreeHeader();
    void repeatCell();
    void movePointer();
    void changeChild();
    void changeOverflow();
    void changeTypes();
    void changeFreeList();
    void copyPage();

    quint32 below(quint32 end) { return end > 0 ? static_cast<quint32>(m_random()) % end : 0; }
    quint32 anyPage() { return below(m_count + 2); }
    quint32 anyNumber();
    quint32 get(quint32 at, int width) const;
    void put(quint32 at, int width, quint32 value);
    Tree anyTree();
    quint32 anyCell(const Tree &tree) { return cell(tree, below(tree.count)); }
    quint32 cell(const Tree &tree, quint32 i) const {
        return tree.page * m_size + get(tree.pointers + 2 * i, 2);
    }

    QByteArray m_bytes;
    std::minstd_rand m_random;
    quint32 m_size = 0;
    quint32 m_count = 0;
};

quint32 Pages::anyNumber() {
    const quint32 numbers[] = {0, 1, anyPage(), below(0x100), below(0x10000), 0x7FFFFFFF, ~0U};
    return numbers[below(std::size(numbers))];
}

quint32 Pages::get(quint32 at, int width) const {
    quint32 value = 0;
    for (int i = 0; i < width; ++i, ++at)
        value = value << 8 | (at < m_bytes.size() ? static_cast<unsigned char>(m_bytes[at]) : 0U);
    return value;
}

void Pages::put(quint32 at, int width, quint32 value) {
    for (int i = width - 1; i >= 0; --i, value >>= 8) {
        if (at + static_cast<quint32>(i) < m_bytes.size())
            m_bytes[at + static_cast<quint32>(i)] = static_cast<char>(value);
    }
}

Pages::Tree Pages::anyTree() {
    Tree tree{.page = below(m_count), .header = 0, .pointers = 0, .count = 0, .isInner = false};
    tree.header = tree.page * m_size + (tree.page == 0 ? 100 : 0);
    tree.isInner = get(tree.header, 1) < 8; // 2 or 5; leaves have 10 or 13
    tree.pointers = tree.header + (tree.isInner ? 12 : 8);
    tree.count = get(tree.header + 3, 2);
    return tree;
}

void Pages::changeHeader() {
    // Page size, versions, reserved bytes, pages, free pages, schema, encoding, version numbers.
    constexpr struct {
        quint32 at;
        int width;
    } fields[] = {{16, 2}, {18, 1}, {19, 1}, {20, 1}, {24, 4}, {28, 4}, {32, 4},
                  {36, 4}, {44, 4}, {52, 4}, {56, 4}, {60, 4}, {64, 4}, {92, 4}};
    const auto &field = fields[below(std::size(fields))];
    put(field.at, field.width, anyNumber());
}

void Pages::changeTreeHeader() {
    const Tree tree = anyTree();
    constexpr quint32 kinds[] = {2, 5, 10, 13};
    // Kind of page, first free block, number of cells, start of cells, fragments, rightmost child.
    switch (below(6)) {
    case 0:
        return put(tree.header, 1, kinds[below(4)]);
    case 1:
        return put(tree.header + 1, 2, below(m_size));
    case 2:
        return put(tree.header + 3, 2, anyNumber());
    case 3:
        return put(tree.header + 5, 2, anyNumber());
    case 4:
        return put(tree.header + 7, 1, anyNumber());
    default:
        return put(tree.header + 8, 4, anyPage());
    }
}

/// As many pointers as fit, all to one cell: its text is in the file once and is read often.
void Pages::repeatCell() {
    const Tree tree = anyTree();
    const quint32 cell = get(tree.pointers + 2 * below(tree.count), 2);
    const quint32 before = tree.pointers - tree.page * m_size;
    const quint32 maxCount = (m_size - 8) / 6; // SQLite takes more for damage
    const quint32 fitting = cell > before ? std::min((cell - before) / 2, maxCount) : 0;
    const quint32 count = below(2) == 0 ? fitting : std::min(fitting, tree.count);
    for (quint32 i = 0; i < count; ++i)
        put(tree.pointers + 2 * i, 2, cell);
    put(tree.header + 3, 2, std::max(count, tree.count));
}

void Pages::movePointer() {
    const Tree tree = anyTree();
    const quint32 other = get(tree.pointers + 2 * below(tree.count), 2);
    put(tree.pointers + 2 * below(tree.count), 2, below(2) == 0 ? other : below(m_size));
}

/// Pages below that are shared, or lead in circles.
void Pages::changeChild() {
    const Tree tree = anyTree();
    if (!tree.isInner)
        return copyPage();
    const quint32 child = anyPage();
    const bool isEach = below(2) == 0;
    for (quint32 i = 0; isEach && i < std::min(tree.count, m_size / 2); ++i)
        put(cell(tree, i), 4, child);
    put(isEach ? tree.header + 8 : anyCell(tree), 4, child);
}

/// A larger payload in a leaf of a table, and where its chain of overflow pages goes on.
void Pages::changeOverflow() {
    const Tree tree = anyTree();
    const quint32 start = anyCell(tree);
    const quint32 least = (m_size - 12) * 32 / 255 - 23;
    const quint32 payload = below(2) == 0 ? below(0x4000) : least + below(4) * (m_size - 4);
    put(start, 2, 0x8000 | (payload << 1 & 0x7F00) | (payload & 0x7F));
    const quint32 filled = least + (payload > least ? (payload - least) % (m_size - 4) : 0);
    const quint32 kept = filled <= m_size - 35 ? filled : least;
    const quint32 page = anyPage();
    put(start + 3 + kept, 4, page); // a size of two bytes, a rowid of one
    put((page - 1) * m_size, 4, anyPage());
}

/// What a record says of the type and the length of a value.
void Pages::changeTypes() {
    const quint32 start = anyCell(anyTree());
    put(start + 2 + below(48), 1, below(0x100));
}

void Pages::changeFreeList() {
    const quint32 page = anyPage();
    put(32, 4, page);
    put(36, 4, anyNumber());
    put((page - 1) * m_size, 4, anyPage());
    put((page - 1) * m_size + 4, 4, anyNumber());
    put((page - 1) * m_size + 8 + 4 * below(8), 4, anyPage());
}

void Pages::copyPage() {
    const QByteArray page = m_bytes.mid(below(m_count) * m_size, m_size);
    const quint32 to = below(m_count + 1);
    m_bytes.replace(to * m_size, m_size, page);
    m_count = std::max(m_count, to + 1);
    put(28, 4, m_count);
}

void Pages::change() {
    constexpr void (Pages::*changes[])() = {
        &Pages::changeHeader,   &Pages::changeTreeHeader, &Pages::repeatCell,
        &Pages::movePointer,    &Pages::changeChild,      &Pages::changeOverflow,
        &Pages::changeFreeList, &Pages::changeTypes,      &Pages::copyPage};
    for (quint32 i = 1 + below(4); i > 0; --i)
        (this->*changes[below(std::size(changes))])();
}

QByteArray Pages::toLog() {
    QByteArray log;
    quint32 sums[2] = {0, 0};
    const auto append = [&log](std::initializer_list<quint32> words) {
        for (const quint32 word : words) {
            char bytes[sizeof word];
            qToBigEndian(word, bytes);
            log.append(bytes, sizeof bytes);
        }
    };
    const auto count = [&sums](const QByteArray &bytes) {
        for (const char *at = bytes.cbegin(); at + 8 <= bytes.cend(); at += 8) {
            sums[0] += qFromBigEndian<quint32>(at) + sums[1];
            sums[1] += qFromBigEndian<quint32>(at + 4) + sums[0];
        }
    };
    // The mark of sums over the highest byte first, version, page size, number, two salts.
    append({0x377F0683, 3007000, m_size, 0, 1, 2});
    count(log);
    append({sums[0], sums[1]});
    for (quint32 left = 1 + below(4); left > 0; --left) {
        const quint32 page = below(m_count);
        const qsizetype start = log.size();
        append({page + 1, left == 1 ? m_count : 0}); // the last one commits
        const QByteArray content = m_bytes.mid(page * m_size, m_size);
        count(log.mid(start));
        count(content);
        append({1, 2, sums[0], sums[1]});
        log += content;
    }
    return log;
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(unsigned char *data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
    std::optional<ProjectInput> input = ProjectInput::read(data, size);
    if (!input || seed % 8 == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    Pages pages(input->project, seed);
    if (pages.isEmpty())
        return LLVMFuzzerMutate(data, size, maxSize);
    pages.change();
    if (seed % 8 == 1) {
        input->side = pages.toLog();
        qToBigEndian<quint16>(0x0202, input->project.data() + 18); // the versions that have a log
    } else {
        input->project = pages.bytes();
    }
    const QByteArray bytes = input->bytes();
    if (static_cast<std::size_t>(bytes.size()) > maxSize)
        return LLVMFuzzerMutate(data, size, maxSize);
    std::copy(bytes.cbegin(), bytes.cend(), data);
    return static_cast<std::size_t>(bytes.size());
}
