#pragma once

#include <QtTest> // includes Qt Core

#include <atomic>
#include <cstdio>
#include <iterator>
#include <thread>
#include <vector>

inline QString u(const char* text) { return QString::fromUtf8(text); }
inline QString u(const char16_t* text) { return QString::fromUtf16(text); }

/** A text with " in place of each '. */
inline QString quoted(const char* text) { return u(text).replace(QLatin1Char('\''), QLatin1Char('"')); }

/** Writes a file and makes its folder. @return false if that fails */
inline bool writeFile(const QString& fileName, const QByteArray& content) {
    QFile file(fileName);
    return QDir().mkpath(QFileInfo(fileName).path()) && file.open(QIODevice::WriteOnly)
           && file.write(content) == content.size() && file.flush();
}

inline QByteArray readFile(const QString& fileName) {
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** The content of a file in tests/data. */
inline QByteArray readData(const char* name) { return readFile(u(TEST_DATA "/") + u(name)); }

/** Adds a data row for each row of a table, with the row's member "name" as its name. */
template <typename Table> void addRows(const Table& table) {
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(table)); ++i) { QTest::newRow(table[i].name) << i; }
}

/** The row of the table for which the test runs now. */
template <typename Table> const auto& currentRow(const Table& table) {
    QFETCH(int, index);
    return table[index];
}

/** Gives and prints the rounds of a randomised test: ORV_TEST_ROUNDS, by default 20,000, divided by @p share. */
inline int testRounds(int share = 1) {
    const int rounds = qMax(1, qEnvironmentVariable("ORV_TEST_ROUNDS", QStringLiteral("20000")).toInt() / share);
    std::printf("ROUNDS : %s %d\n", QTest::currentTestFunction(), rounds);
    return rounds;
}

/** Up to @p most fragments, joined. A text uses only some of the fragments, so that rare neighbours meet. */
inline QString randomText(QRandomGenerator& random, const QStringList& fragments, int most) {
    QStringList chosen;
    for (int kinds = random.bounded(1, int(fragments.size())); kinds > 0; --kinds) {
        chosen += fragments[random.bounded(int(fragments.size()))];
    }
    QString text;
    for (int count = random.bounded(most + 1); count > 0; --count) {
        text += chosen[random.bounded(int(chosen.size()))];
    }
    return text;
}

/** Whether @p holds gives true in all rounds of all threads; its argument is the number of the thread. */
template <typename Condition> bool isAlwaysTrue(int threadCount, int rounds, Condition holds) {
    std::atomic<int> count{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&count, rounds, holds, i] {
            for (int round = 0; round < rounds; ++round) { count += holds(i) ? 1 : 0; }
        });
    }
    for (std::thread& thread : threads) { thread.join(); }
    return count == threadCount * rounds;
}
