#pragma once

#include <QString>

#include <cstddef>
#include <cstdlib>

/** The input of a fuzz target: a byte that chooses a variant, and a text. */
struct FuzzInput {
    FuzzInput(const quint8* data, std::size_t size)
        : variant(size > 0 ? data[0] : 0)
        , text(QString::fromUtf8(QByteArray(reinterpret_cast<const char*>(data), QByteArray::size_type(size)).mid(1))) {
    }

    template <typename T, std::size_t count> T chosenOf(const T (&values)[count]) const {
        return values[variant % count];
    }

    const quint8 variant;
    const QString text;
};

/** Ends the process unless @p holds; the fuzzer reports this as a finding. */
inline void require(bool holds) {
    if (!holds) { std::abort(); }
}

// Log lines are not findings, and printing them would slow the search.
inline const QtMessageHandler usualHandler =
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
