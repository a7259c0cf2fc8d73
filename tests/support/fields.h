#pragma once

#include <support/helpers.h>

#include <QDateTime>
#include <QDebug>
#include <QVector>

/** Gives @p value another one of its type. */
inline void change(QString& value) { value += QLatin1Char('x'); }
inline void change(QByteArray& value) { value += 'x'; }
inline void change(QDateTime& value) { value = QDateTime::fromSecsSinceEpoch(value.isValid() ? 2 : 1); }
inline void change(QStringList& value) { value += QStringLiteral("x"); }
template <typename T> void change(QList<T>& value) { value.append(T()); }
template <typename T> void change(QVector<T>& value) { value.append(T()); }
template <typename T> void change(T& value) { value = T(int(value) + 1); }

/**
 * For each field a "1" when changing it alone makes two records unequal, a "0" when it does not; "?" when the
 * fields do not stand in this order, or changing both records alike does not make them equal.
 */
template <typename Record, typename... Fields> QString countingFields(Fields... fields)
{
    QString result;
    const void* previous = nullptr;
    const Record reference;
    const auto examine = [&](auto field) {
        Record record;
        Record other;
        change(record.*field);
        result += QLatin1Char(record == other ? '0' : record != other ? '1' : '?');
        change(other.*field);
        const void* const place = &(reference.*field);
        result += place > previous && record == other ? QString() : QStringLiteral("?");
        previous = place;
    };
    (examine(fields), ...);
    return result;
}

/** What a printer writes, with the quoting that streams have by default. */
template <typename Record> QString printed(const Record& record)
{
    QString text;
    QDebug(&text) << record << "|" << 1;
    return text;
}

/** The line of that name in tests/data/printed.txt. */
inline QString expectedPrint(const char* name)
{
    const QByteArray lines = '\n' + readData("printed.txt");
    const int begin = lines.indexOf('\n' + QByteArray(name) + ": ") + int(qstrlen(name)) + 3;
    return u(lines.mid(begin, lines.indexOf('\n', begin) - begin));
}
