#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdio>
#include <cstdlib>

/** The input of a fuzz target: a byte that chooses a variant, and the content. */
class FuzzInput
{
public:
    FuzzInput(const quint8* data, std::size_t size)
        : variant(size > 0 ? data[0] : 0)
        , bytes(size > 0 ? QByteArray(reinterpret_cast<const char*>(data + 1), int(size - 1)) : QByteArray("")) {}

    QString text() const { return QString::fromUtf8(bytes.constData(), bytes.size()); }

    template <typename T, std::size_t count> T chosenOf(const T (&values)[count]) const {
        return values[variant % count];
    }

    const quint8 variant;
    const QByteArray bytes;
};

/** Ends the process unless @p holds; the fuzzer reports this as a finding. */
inline void require(bool holds, const char* rule) {
    if (!holds) {
        std::fprintf(stderr, "broken rule: %s\n", rule);
        std::abort();
    }
}

// Log lines are not findings, and printing them would slow the search.
inline const QtMessageHandler usualHandler =
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
