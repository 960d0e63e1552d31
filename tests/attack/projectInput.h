// The input of projectAttack: the project, the journal or log beside it, and in the last four bytes
// the length of the latter, the highest first.
#pragma once

#include <QByteArray>
#include <QtEndian>

#include <optional>

namespace veltrona::attack {

struct ProjectInput {
    QByteArray project;
    QByteArray side; // may be empty

    /// A length that the input doesn't have counts as 0. Empty if there is no length.
    static std::optional<ProjectInput> read(const unsigned char *data, std::size_t size) {
        if (size < sizeof(quint32))
            return std::nullopt;
        const std::size_t rest = size - sizeof(quint32);
        const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(rest));
        const qsizetype length = qFromBigEndian<quint32>(data + rest);
        return length <= bytes.size() ? ProjectInput{bytes.chopped(length), bytes.last(length)}
                                      : ProjectInput{bytes, {}};
    }
    QByteArray bytes() const {
        QByteArray length(sizeof(quint32), '\0');
        qToBigEndian(static_cast<quint32>(side.size()), length.data());
        return project + side + length;
    }
    bool isLog() const { return side.startsWith("\x37\x7F\x06"); }
};

} // namespace veltrona::attack
