#include "commands/commands.h"
#include "shell/failure.h"
#include "shell/listing.h"
#include "shell/output.h"
#include "shell/text.h"

#include <core/types/radiogenre.h>

#include <QJsonArray>

#include <algorithm>

namespace {

using Genre = RadioStation::Genre;

/** One way of broadcasters to name genres. */
struct Vocabulary
{
    const char* name;
    const QHash<int, Genre>* codes; ///< nullptr for category names
};

const Vocabulary vocabularies[] = {
    {"rds", &rdsGenreToTyxGenreHash},
    {"rbds", &rbdsGenreToTyxGenreHash},
    {"satellite", nullptr},
};

/** The genres that a word stands for, ascending. @throw Failure where a number is needed */
QList<Genre> genresOf(const Vocabulary& vocabulary, const QString& word)
{
    QList<Genre> genres;
    if (vocabulary.codes == nullptr) {
        genres = sdarsGenreToTyxGenreHash.values(word.toLower());
        std::sort(genres.begin(), genres.end());
        return genres;
    }
    bool isNumber = false;
    const int code = word.toInt(&isNumber);
    if (!isNumber) {
        throw Failure{u"not a number for --%1: \"%2\""_s.arg(QLatin1String(vocabulary.name), word)};
    }
    if (vocabulary.codes->contains(code)) {
        genres += vocabulary.codes->value(code);
    }
    return genres;
}

/** The words that stand for a genre, in order. */
QJsonArray wordsOf(const Vocabulary& vocabulary, Genre genre)
{
    QStringList words;
    if (vocabulary.codes == nullptr) {
        words = sdarsGenreToTyxGenreHash.keys(genre);
        words.sort();
        return QJsonArray::fromStringList(words);
    }
    QList<int> codes = vocabulary.codes->keys(genre);
    std::sort(codes.begin(), codes.end());
    for (const int code : qAsConst(codes)) {
        words += QString::number(code);
    }
    return QJsonArray::fromStringList(words);
}

void showAll(bool isJson)
{
    Listing listing(isJson, {{"value", "VALUE"}, {"genre", "GENRE"}, {"rds", "RDS"},
                                {"rbds", "RBDS"}, {"satellite", "SATELLITE"}});
    for (int value = 0; !genreName(Genre(value)).isNull(); ++value) {
        QVector<QJsonValue> cells{value, genreName(Genre(value))};
        for (const Vocabulary& vocabulary : vocabularies) {
            cells += wordsOf(vocabulary, Genre(value));
        }
        listing.add(cells);
    }
    listing.finish();
}

int run(const CommandLine& commandLine)
{
    int exitCode = 0;
    bool isAsked = false;
    Listing listing(commandLine.isSet("json"),
        {{"vocabulary", "VOCABULARY"}, {"code", "CODE"}, {"value", "VALUE"}, {"genre", "GENRE"}});
    for (const Vocabulary& vocabulary : vocabularies) {
        const QString name = QLatin1String(vocabulary.name);
        const QStringList words = commandLine.values(vocabulary.name);
        for (const QString& word : words) {
            isAsked = true;
            const QList<Genre> genres = genresOf(vocabulary, word);
            for (const Genre genre : genres) {
                listing.add({name, word, genre, genreName(genre)});
            }
            if (genres.isEmpty()) {
                printError(u"unknown for --%1: \"%2\""_s.arg(name, word));
                exitCode = 1;
            }
        }
    }
    if (isAsked) {
        listing.finish();
    } else {
        showAll(commandLine.isSet("json"));
    }
    return exitCode;
}

} // namespace

Command genreCommand()
{
    return {"genre", "shows radio genres, and what broadcasters call them",
        u"Shows the genres that programme types and satellite-radio categories stand "
        "for;\nwithout any, all genres with what stands for them. An option takes "
        "one or more\nwords."_s,
        {},
        {{"rds", "Programme types of RDS and DAB, 0 to 31.", "N…"},
            {"rbds", "Programme types of RBDS, 0 to 31.", "N…"},
            {"satellite", "Category names, in any letter case.", "NAME…"},
            {"json", "Writes one JSON object per genre."}},
        {u"--rds 10 --satellite \"Latino\""_s}, run, 0};
}
