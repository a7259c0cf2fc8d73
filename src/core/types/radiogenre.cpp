#include <core/types/radiogenre.h>

namespace {

using Genre = RadioStation::Genre;

/** What a PTY code means in Europe and in North America. */
struct ProgramType
{
    Genre rds;
    Genre rbds;
};

// In the order of the codes.
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

struct Category
{
    const char* name;
    Genre genre;
};

// Sports in Spanish counts as Latino: its listeners look for it there.
constexpr Category categories[] = {
    {"Pop", Genre::Pop},
    {"More", Genre::Unknown},
    {"Rock", Genre::Rock},
    {"Hip-Hop", Genre::HipHop},
    {"R&B", Genre::RhythmAndBlues},
    {"Dance/Electronic", Genre::Electronic},
    {"Country", Genre::Country},
    {"Christian", Genre::Religion},
    {"Jazz/Standards", Genre::Jazz},
    {"Classical", Genre::Classical},
    {"Jzz/Stndrd/Clscl", Genre::Jazz},
    {"Jzz/Stndrd/Clscl", Genre::Classical},
    {"Kids", Genre::Children},
    {"Family/Health", Genre::Society},
    {"Sports", Genre::Sports},
    {"Comedy", Genre::Comedy},
    {"Marquee Talk", Genre::MarqueeTalk},
    {"Entertainment", Genre::Entertainment},
    {"News/PublicRadio", Genre::News},
    {"News/Politics", Genre::News},
    {"News/Politics", Genre::Politics},
    {"Politics/Issues", Genre::Politics},
    {"Religion", Genre::Religion},
    {"Traffic/Weather", Genre::Weather},
    {"Latino", Genre::Latino},
    {"Canadian", Genre::Canadian},
    {"Holiday", Genre::Leisure},
    {"Party", Genre::Party},
    {"NFL Play-by-Play", Genre::Football},
    {"NFL PxP", Genre::Football},
    {"MLB Play-by-Play", Genre::Baseball},
    {"MLB PxP", Genre::Baseball},
    {"NBA Play-by-Play", Genre::Basketball},
    {"NBA PxP", Genre::Basketball},
    {"NHL Play-by-Play", Genre::Hockey},
    {"NHL PxP", Genre::Hockey},
    {"Sports Play-by-Play", Genre::Sports},
    {"Sports PxP", Genre::Sports},
    {"Deportes en Vivo", Genre::Latino},
};

QHash<int, Genre> genresByCode(Genre ProgramType::*vocabulary)
{
    QHash<int, Genre> genres;
    int code = 0;
    for (const ProgramType& programType : programTypes) {
        genres.insert(code++, programType.*vocabulary);
    }
    return genres;
}

QMultiHash<QString, Genre> genresByCategory()
{
    QMultiHash<QString, Genre> genres;
    for (const Category& category : categories) {
        genres.insert(QString::fromLatin1(category.name).toLower(), category.genre);
    }
    return genres;
}

} // namespace

const QHash<int, Genre> rbdsGenreToTyxGenreHash = genresByCode(&ProgramType::rbds);
const QHash<int, Genre> rdsGenreToTyxGenreHash = genresByCode(&ProgramType::rds);
const QMultiHash<QString, Genre> sdarsGenreToTyxGenreHash = genresByCategory();
