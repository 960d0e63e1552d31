// Changes a project as a crafted one would differ: fields of its header, cells and pointers of its
// B-tree pages, the list of free pages, chains of overflow pages, and pages in a log. Changes of
// single bytes seldom leave a file that SQLite reads that far. The input is that of projectAttack.
#include "attack/projectInput.h"

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <random>

extern "C" std::size_t LLVMFuzzerMutate(unsigned char *data, std::size_t size, std::size_t maxSize);

using veltrona::attack::ProjectInput;

namespace {

/// Pages count from 0 here, and from 1 in the file. What lies outside the file reads as 0.
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
        quint32 header, pointers, count;
        bool isInner;
    };

    quint32 below(quint32 end) { return end > 0 ? static_cast<quint32>(m_random()) % end : 0; }
    quint32 anyPage() { return below(m_count + 2); }
    quint32 anyNumber() {
        const std::array numbers{0U, 1U, anyPage(), below(0x100), below(0x10000), ~0U >> 1, ~0U};
        return numbers[below(numbers.size())];
    }
    quint32 get(quint32 at, int width) const {
        quint32 value = 0;
        for (const char byte : m_bytes.mid(at, width))
            value = value << 8 | static_cast<unsigned char>(byte);
        return value;
    }
    void put(quint32 at, int width, quint32 value) {
        for (; width > 0; --width, value >>= 8) {
            if (const quint32 last = at + static_cast<quint32>(width) - 1; last < m_bytes.size())
                m_bytes[last] = static_cast<char>(value);
        }
    }
    Tree anyTree() {
        const quint32 page = below(m_count);
        const quint32 header = page * m_size + (page == 0 ? 100 : 0);
        const bool isInner = get(header, 1) < 8; // 2 or 5; leaves have 10 or 13
        return {header, header + (isInner ? 12 : 8), get(header + 3, 2), isInner};
    }
    quint32 anyPointer(const Tree &tree) { return tree.pointers + 2 * below(tree.count); }
    quint32 cell(quint32 pointer) const { return pointer / m_size * m_size + get(pointer, 2); }

    void changeHeader();
    void changeTree();
    void changeChildren();
    void repeatCell();
    void changeOverflow();
    void changeFreeList();
    void copyPage();

    QByteArray m_bytes;
    std::minstd_rand m_random;
    quint32 m_size = 0;
    quint32 m_count = 0;
};

void Pages::changeHeader() {
    // Page size, versions, reserved bytes, pages, free pages, schema, encoding, version numbers.
    constexpr quint32 places[] = {16, 18, 20, 24, 28, 32, 36, 44, 52, 56, 60, 64, 92};
    const quint32 at = places[below(std::size(places))];
    put(at, at == 20 ? 1 : at < 20 ? 2 : 4, anyNumber());
}

void Pages::changeTree() {
    const Tree tree = anyTree();
    constexpr quint32 kinds[] = {2, 5, 10, 13};
    switch (below(6)) {
    case 0:
        return put(tree.header, 1, kinds[below(4)]);
    case 1:
        return put(tree.header + 1, 2, below(m_size)); // the first free block
    case 2:
        return put(tree.header + 3, 4, anyNumber()); // number of cells, their start
    case 3:
        return put(anyPointer(tree), 2, get(anyPointer(tree), 2));
    case 4:
        return put(anyPointer(tree), 2, below(m_size));
    default: // the type of a value in a record
        return put(cell(anyPointer(tree)) + 2 + below(48), 1, below(0x100));
    }
}

/// Pages below that are shared, or lead in circles.
void Pages::changeChildren() {
    const Tree tree = anyTree();
    const quint32 child = anyPage();
    if (!tree.isInner)
        return copyPage();
    put(tree.header + 8, 4, child);
    for (quint32 i = below(2) * std::min(tree.count, m_size / 2); i > 0; --i)
        put(cell(tree.pointers + 2 * (i - 1)), 4, child);
}

/// As many pointers as fit, all to one cell: its text is in the file once and is read often.
void Pages::repeatCell() {
    const Tree tree = anyTree();
    const quint32 start = get(anyPointer(tree), 2);
    const quint32 before = tree.pointers % m_size;
    const quint32 most = (m_size - 8) / 6; // SQLite takes more for damage
    const quint32 count = start > before ? std::min((start - before) / 2, most) : 0;
    for (quint32 i = 0; i < count; ++i)
        put(tree.pointers + 2 * i, 2, start);
    put(tree.header + 3, 2, count);
}

/// A larger payload in a leaf of a table, and where its chain of overflow pages goes on.
void Pages::changeOverflow() {
    const quint32 start = cell(anyPointer(anyTree()));
    const quint32 least = (m_size - 12) * 32 / 255 - 23;
    const quint32 payload = least + below(below(2) == 0 ? 0x4000 : m_size);
    put(start, 2, 0x8000 | (payload << 1 & 0x7F00) | (payload & 0x7F));
    const quint32 filled = least + (payload - least) % (m_size - 4);
    const quint32 page = anyPage();
    // A size of two bytes and a rowid of one come before what the leaf keeps.
    put(start + 3 + (filled <= m_size - 35 ? filled : least), 4, page);
    put((page - 1) * m_size, 4, anyPage());
}

void Pages::changeFreeList() {
    const quint32 page = anyPage();
    const quint32 trunk = (page - 1) * m_size; // next trunk, number of leaves, leaves
    put(32, 4, page);
    put(36, 4, anyNumber());
    put(trunk, 4, anyPage());
    put(trunk + 4, 4, anyNumber());
    put(trunk + 8 + 4 * below(8), 4, anyPage());
}

void Pages::copyPage() {
    const quint32 to = below(m_count + 1);
    m_bytes.replace(to * m_size, m_size, m_bytes.mid(below(m_count) * m_size, m_size));
    m_count = std::max(m_count, to + 1);
    put(28, 4, m_count);
}

void Pages::change() {
    constexpr void (Pages::*changes[])() = {&Pages::changeHeader,   &Pages::changeTree,
                                            &Pages::changeTree,     &Pages::changeChildren,
                                            &Pages::repeatCell,     &Pages::changeOverflow,
                                            &Pages::changeFreeList, &Pages::copyPage};
    for (quint32 left = 1 + below(4); left > 0; --left)
        (this->*changes[below(std::size(changes))])();
}

QByteArray Pages::toLog() {
    QByteArray log;
    quint32 sums[2] = {0, 0};
    const auto append = [&log](std::initializer_list<quint32> words) {
        for (const quint32 word : words) {
            const quint32 bytes = qToBigEndian(word);
            log.append(reinterpret_cast<const char *>(&bytes), sizeof bytes);
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
        count(log.mid(start));
        const QByteArray content = m_bytes.mid(page * m_size, m_size);
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
    Pages pages(input ? input->project : QByteArray(), seed);
    if (pages.isEmpty() || seed % 8 == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    pages.change();
    if (seed % 8 == 1) {
        input->side = pages.toLog();
        input->project.replace(18, 2, "\2\2"); // the versions that have a log
    } else {
        input->project = pages.bytes();
    }
    const QByteArray bytes = input->bytes();
    if (static_cast<std::size_t>(bytes.size()) > maxSize)
        return LLVMFuzzerMutate(data, size, maxSize);
    std::copy(bytes.cbegin(), bytes.cend(), data);
    return static_cast<std::size_t>(bytes.size());
}
