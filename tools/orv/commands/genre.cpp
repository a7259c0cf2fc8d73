#include "commands/commands.h"
#include "shell/commandline.h"
#include "shell/output.h"

#include <core/types/radiogenre.h>

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace {

using Genre = RadioStation::Genre;

// By value.
constexpr const char* genreNames[] = {"Unknown", "AdultHits", "Canadian", "Charts", "Children",
    "Classical", "Comedy", "Country", "Culture", "Documentary", "Drama", "EasyListening",
    "Education", "Electronic", "Entertainment", "Finance", "Folk", "HipHop", "MarqueeTalk",
    "PublicRadio", "Jazz", "Latino", "Leisure", "Baseball", "Basketball", "Football", "Hockey",
    "NationalMusic", "News", "Oldies", "Party", "Politics", "Pop", "Religion", "RhythmAndBlues",
    "Rock", "Science", "Society", "Soft", "Sports", "Talk", "Travel", "Weather"};
static_assert(std::size(genreNames) == RadioStation::Weather + 1, "one name for each genre");

constexpr const char* vocabularies[] = {"rds", "rbds", "satellite"};

/** A word of a vocabulary, and one genre it stands for. */
struct Meaning
{
    const char* vocabulary;
    QString word;
    Genre genre;
};

QString nameOf(Genre genre)
{
    return QLatin1String(genreNames[genre]);
}

/** Appends what one word stands for; nothing when it is unknown. @throw Failure for no number */
void appendMeanings(const char* vocabulary, const QString& word, QVector<Meaning>& meanings)
{
    if (vocabulary == vocabularies[2]) {
        QList<Genre> genres = sdarsGenreToTyxGenreHash.values(word.toLower());
        std::sort(genres.begin(), genres.end());
        for (const Genre genre : qAsConst(genres)) {
            meanings.append({vocabulary, word, genre});
        }
        return;
    }
    bool isNumber = false;
    const int code = word.toInt(&isNumber);
    if (!isNumber) {
        throw Failure{
            QStringLiteral("no number for --%1: \"%2\"").arg(QLatin1String(vocabulary), word)};
    }
    const auto& table =
        vocabulary == vocabularies[0] ? rdsGenreToTyxGenreHash : rbdsGenreToTyxGenreHash;
    if (table.contains(code)) {
        meanings.append({vocabulary, word, table.value(code)});
    }
}

void printMeanings(const QVector<Meaning>& meanings, bool isJson)
{
    QVector<QStringList> rows{{QStringLiteral("VOCABULARY"), QStringLiteral("CODE"),
        QStringLiteral("VALUE"), QStringLiteral("GENRE")}};
    for (const Meaning& meaning : meanings) {
        if (isJson) {
            printJson({{QStringLiteral("vocabulary"), QLatin1String(meaning.vocabulary)},
                {QStringLiteral("code"), meaning.word}, {QStringLiteral("value"), meaning.genre},
                {QStringLiteral("genre"), nameOf(meaning.genre)}});
        } else {
            rows.append({QLatin1String(meaning.vocabulary), onOneLine(meaning.word),
                QString::number(meaning.genre), nameOf(meaning.genre)});
        }
    }
    if (!isJson && !meanings.isEmpty()) {
        printTable(rows);
    }
}

QStringList codesOf(const QHash<int, Genre>& table, Genre genre)
{
    QList<int> codes = table.keys(genre);
    std::sort(codes.begin(), codes.end());
    QStringList texts;
    for (const int code : qAsConst(codes)) {
        texts.append(QString::number(code));
    }
    return texts;
}

/** All genres with the words that stand for them. */
void printVocabularies(bool isJson)
{
    QVector<QStringList> rows{{QStringLiteral("VALUE"), QStringLiteral("GENRE"),
        QStringLiteral("RDS"), QStringLiteral("RBDS"), QStringLiteral("SATELLITE")}};
    for (int value = 0; value < int(std::size(genreNames)); ++value) {
        const auto genre = Genre(value);
        QStringList names = sdarsGenreToTyxGenreHash.keys(genre);
        names.sort();
        const QStringList words[] = {
            codesOf(rdsGenreToTyxGenreHash, genre), codesOf(rbdsGenreToTyxGenreHash, genre), names};
        QJsonObject object{
            {QStringLiteral("value"), value}, {QStringLiteral("genre"), nameOf(genre)}};
        QStringList row{QString::number(value), nameOf(genre)};
        for (std::size_t i = 0; i < std::size(vocabularies); ++i) {
            object.insert(QLatin1String(vocabularies[i]), QJsonArray::fromStringList(words[i]));
            row.append(words[i].join(QStringLiteral(", ")));
        }
        if (isJson) {
            printJson(object);
        } else {
            rows.append(row);
        }
    }
    if (!isJson) {
        printTable(rows);
    }
}

/** The arguments with each option before each of its words, as in "--rds 1 --rds 2". */
QStringList spelledOut(const QStringList& arguments)
{
    QStringList result;
    QString option;
    bool wasOption = false;
    for (const QString& argument : arguments) {
        const bool isOption = argument.startsWith(QLatin1String("--"));
        if (isOption) {
            option = argument.section(QLatin1Char('='), 0, 0);
        } else if (!wasOption && !option.isEmpty()) {
            result.append(option);
        }
        result.append(argument);
        wasOption = isOption && !argument.contains(QLatin1Char('='));
    }
    return result;
}

} // namespace

int runGenre(const QStringList& arguments)
{
    CommandLine commandLine("genre",
        "Shows the genres that programme types and satellite-radio categories stand for; without\n"
        "any, all genres with what stands for them. An option takes one or more words.");
    commandLine.addOption("rds", "Programme types of RDS and DAB, 0 to 31.", "N…");
    commandLine.addOption("rbds", "Programme types of RBDS, 0 to 31.", "N…");
    commandLine.addOption("satellite", "Category names, in any letter case.", "NAME…");
    commandLine.addOption("json", "Writes one JSON object per genre.");
    commandLine.addExample("--rds 10 --satellite \"Latino\"");
    commandLine.process(spelledOut(arguments), 0);

    QVector<Meaning> meanings;
    bool isAsked = false;
    int exitCode = 0;
    for (const char* vocabulary : vocabularies) {
        const QStringList words = commandLine.values(vocabulary);
        for (const QString& word : words) {
            const int count = meanings.size();
            appendMeanings(vocabulary, word, meanings);
            isAsked = true;
            if (meanings.size() == count) {
                printError(QStringLiteral("unknown for --%1: \"%2\"")
                               .arg(QLatin1String(vocabulary), word));
                exitCode = 1;
            }
        }
    }
    if (isAsked) {
        printMeanings(meanings, commandLine.isSet("json"));
    } else {
        printVocabularies(commandLine.isSet("json"));
    }
    return exitCode;
}
