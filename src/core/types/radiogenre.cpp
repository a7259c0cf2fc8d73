#include <core/types/radiogenre.h>

#include <iterator>

namespace {

using Genre = RadioStation::Genre;

/** The genres of a PTY code in Europe and in North America. */
struct ProgramType
{
    Genre rds;
    Genre rbds;
};

// Indexed by PTY code.
constexpr ProgramType programTypes[] = {
    {Genre::Unknown, Genre::Unknown},
    {Genre::News, Genre::News},
    {Genre::News, Genre::News},
    {Genre::News, Genre::Sports},
    {Genre::Sports, Genre::Talk},
    {Genre::Education, Genre::Rock},
    {Genre::Drama, Genre::Rock},
    {Genre::Culture, Genre::AdultHits},
    {Genre::Science, Genre::Rock}, // 8
    {Genre::Unknown, Genre::Charts},
    {Genre::Pop, Genre::Country},
    {Genre::Rock, Genre::Oldies},
    {Genre::EasyListening, Genre::Soft},
    {Genre::Classical, Genre::Oldies},
    {Genre::Classical, Genre::Jazz},
    {Genre::Unknown, Genre::Classical},
    {Genre::Weather, Genre::RhythmAndBlues}, // 16
    {Genre::Finance, Genre::RhythmAndBlues},
    {Genre::Children, Genre::Education},
    {Genre::Society, Genre::Religion},
    {Genre::Religion, Genre::Religion},
    {Genre::Unknown, Genre::Society},
    {Genre::Travel, Genre::PublicRadio},
    {Genre::Leisure, Genre::Education},
    {Genre::Jazz, Genre::Latino}, // 24
    {Genre::Country, Genre::Latino},
    {Genre::NationalMusic, Genre::HipHop},
    {Genre::Oldies, Genre::Unknown},
    {Genre::Folk, Genre::Unknown},
    {Genre::Documentary, Genre::Weather},
    {Genre::Unknown, Genre::Unknown},
    {Genre::Unknown, Genre::Unknown},
};
static_assert(std::size(programTypes) == 32, "a PTY code has 5 bits");

QHash<int, Genre> genresByCode(Genre ProgramType::*vocabulary)
{
    QHash<int, Genre> genres;
    genres.reserve(int(std::size(programTypes)));
    int code = 0;
    for (const ProgramType& programType : programTypes) {
        genres.insert(code++, programType.*vocabulary);
    }
    return genres;
}

QMultiHash<QString, Genre> genresByCategory()
{
    struct Category
    {
        QString name; // in lower case, as for look-ups
        Genre genre;
    };
    // The last category, live sports in Spanish, is Latino, not Sports.
    const Category categories[] = {
        {QStringLiteral("pop"), Genre::Pop},
        {QStringLiteral("more"), Genre::Unknown},
        {QStringLiteral("rock"), Genre::Rock},
        {QStringLiteral("hip-hop"), Genre::HipHop},
        {QStringLiteral("r&b"), Genre::RhythmAndBlues},
        {QStringLiteral("dance/electronic"), Genre::Electronic},
        {QStringLiteral("country"), Genre::Country},
        {QStringLiteral("christian"), Genre::Religion},
        {QStringLiteral("jazz/standards"), Genre::Jazz},
        {QStringLiteral("classical"), Genre::Classical},
        {QStringLiteral("jzz/stndrd/clscl"), Genre::Jazz},
        {QStringLiteral("jzz/stndrd/clscl"), Genre::Classical},
        {QStringLiteral("kids"), Genre::Children},
        {QStringLiteral("family/health"), Genre::Society},
        {QStringLiteral("sports"), Genre::Sports},
        {QStringLiteral("comedy"), Genre::Comedy},
        {QStringLiteral("marquee talk"), Genre::MarqueeTalk},
        {QStringLiteral("entertainment"), Genre::Entertainment},
        {QStringLiteral("news/publicradio"), Genre::News},
        {QStringLiteral("news/politics"), Genre::News},
        {QStringLiteral("news/politics"), Genre::Politics},
        {QStringLiteral("politics/issues"), Genre::Politics},
        {QStringLiteral("religion"), Genre::Religion},
        {QStringLiteral("traffic/weather"), Genre::Weather},
        {QStringLiteral("latino"), Genre::Latino},
        {QStringLiteral("canadian"), Genre::Canadian},
        {QStringLiteral("holiday"), Genre::Leisure},
        {QStringLiteral("party"), Genre::Party},
        {QStringLiteral("nfl play-by-play"), Genre::Football},
        {QStringLiteral("nfl pxp"), Genre::Football},
        {QStringLiteral("mlb play-by-play"), Genre::Baseball},
        {QStringLiteral("mlb pxp"), Genre::Baseball},
        {QStringLiteral("nba play-by-play"), Genre::Basketball},
        {QStringLiteral("nba pxp"), Genre::Basketball},
        {QStringLiteral("nhl play-by-play"), Genre::Hockey},
        {QStringLiteral("nhl pxp"), Genre::Hockey},
        {QStringLiteral("sports play-by-play"), Genre::Sports},
        {QStringLiteral("sports pxp"), Genre::Sports},
        {QStringLiteral("deportes en vivo"), Genre::Latino},
    };

    QMultiHash<QString, Genre> genres;
    genres.reserve(int(std::size(categories)));
    for (const Category& category : categories) {
        genres.insert(category.name, category.genre);
    }
    return genres;
}

} // namespace

const QHash<int, Genre> rbdsGenreToTyxGenreHash = genresByCode(&ProgramType::rbds);
const QHash<int, Genre> rdsGenreToTyxGenreHash = genresByCode(&ProgramType::rds);
const QMultiHash<QString, Genre> sdarsGenreToTyxGenreHash = genresByCategory();

QString genreName(RadioStation::Genre genre)
{
    // By value.
    static constexpr const char* names[] = {"Unknown", "AdultHits", "Canadian", "Charts",
        "Children", "Classical", "Comedy", "Country", "Culture", "Documentary", "Drama",
        "EasyListening", "Education", "Electronic", "Entertainment", "Finance", "Folk", "HipHop",
        "MarqueeTalk", "PublicRadio", "Jazz", "Latino", "Leisure", "Baseball", "Basketball",
        "Football", "Hockey", "NationalMusic", "News", "Oldies", "Party", "Politics", "Pop",
        "Religion", "RhythmAndBlues", "Rock", "Science", "Society", "Soft", "Sports", "Talk",
        "Travel", "Weather"};
    static_assert(std::size(names) == RadioStation::Weather + 1, "one name for each genre");
    return genre >= 0 && genre <= RadioStation::Weather ? QLatin1String(names[genre]) : QString();
}
