#include "commands/commands.h"

#include <core/types/radiogenre.h>

#include <algorithm>

namespace {

using Genre = RadioStation::Genre;

/** The names that one kind of broadcaster gives to genres. */
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

/** The genres that a word stands for, ascending. @throw Failure if a number is needed */
QList<Genre> genresOf(const Vocabulary& vocabulary, const QString& word)
{
    if (vocabulary.codes == nullptr) {
        QList<Genre> genres = sdarsGenreToTyxGenreHash.values(word.toLower());
        std::sort(genres.begin(), genres.end());
        return genres;
    }
    bool isNumber = false;
    const int code = word.toInt(&isNumber);
    failIf(!isNumber, u"not a number for --%1: \"%2\""_s.arg(QLatin1String(vocabulary.name), word));
    const bool isKnown = vocabulary.codes->contains(code);
    return isKnown ? QList<Genre>{vocabulary.codes->value(code)} : QList<Genre>();
}

/** The codes or names that stand for a genre, in order. */
template <typename Genres>
QStringList wordsOf(const Genres& genres, Genre genre)
{
    auto keys = genres.keys(genre);
    std::sort(keys.begin(), keys.end());
    QStringList words;
    for (const auto& key : qAsConst(keys)) {
        words += QVariant(key).toString();
    }
    return words;
}

void addAll(Listing& listing)
{
    for (int value = 0; !genreName(Genre(value)).isNull(); ++value) {
        const auto genre = Genre(value);
        listing.add({{"value", value, "VALUE"}, {"genre", genreName(genre), "GENRE"},
            {"rds", wordsOf(rdsGenreToTyxGenreHash, genre), "RDS"},
            {"rbds", wordsOf(rbdsGenreToTyxGenreHash, genre), "RBDS"},
            {"satellite", wordsOf(sdarsGenreToTyxGenreHash, genre), "SATELLITE"}});
    }
}

void run(const CommandLine& commandLine)
{
    bool isAsked = false;
    Listing listing;
    for (const Vocabulary& vocabulary : vocabularies) {
        const QString name = QLatin1String(vocabulary.name);
        const QStringList words = commandLine.values(name);
        for (const QString& word : words) {
            isAsked = true;
            const QList<Genre> genres = genresOf(vocabulary, word);
            for (const Genre genre : genres) {
                listing.add({{"vocabulary", name, "VOCABULARY"}, {"code", word, "CODE"},
                    {"value", genre, "VALUE"}, {"genre", genreName(genre), "GENRE"}});
            }
            if (genres.isEmpty()) {
                printError(u"unknown for --%1: \"%2\""_s.arg(name, word), 1);
            }
        }
    }
    if (!isAsked) {
        addAll(listing);
    }
    listing.finish();
}

} // namespace

const Command genreCommand = {"genre", "shows radio genres, and what broadcasters call them",
    u"Shows the genres of the given programme types and satellite-radio categories.\n"
    "If none is given, it shows all genres with their programme types and\n"
    "categories. Each option takes one or more values."_s,
    {},
    {{"rds", "Programme types of RDS and DAB, 0 to 31.", "N…"},
        {"rbds", "Programme types of RBDS, 0 to 31.", "N…"},
        {"satellite", "Category names, in any letter case.", "NAME…"}, jsonOption},
    {u"--rds 10 --satellite \"Latino\""_s}, run, 0};
