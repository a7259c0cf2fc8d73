#include <core/speech/speechcommon.h>
#include <core/types/radiogenre.h>
#include <core/types/radiostation.h>

#include <support/fields.h>

namespace {

using Genre = RadioStation::Genre;

// Read before main(), when the library is already loaded.
const QVector<int> typeIds{QMetaType::type("Language"), QMetaType::type("QList<Language>"),
    QMetaType::type("PromptData"), QMetaType::type("RadioType"), QMetaType::type("RadioStation"),
    QMetaType::type("RadioStation::Genre")};

/** Category names, joined by ",", and their genres. */
const struct {
    const char* name;
    QVector<int> genres;
} categoryLists[] = {{"pop", {32}}, {"deportes en vivo", {21}}, {"Deportes en Vivo", {21}},
    {"jzz/stndrd/clscl", {5, 20}}, {"news/politics", {28, 31}}, {"news/POLITICS,News/PublicRadio", {28, 31}},
    {"Rock ,", {0}}, {"Rock,More,no such,rock", {0, 35}}};

/** A station with all fields set except the type. Conversions keep some fields and reset others. */
RadioStation fullStation() {
    RadioStation station;
    station.name = station.pronunciation = station.readOut = u("p");
    station.genres = {RadioStation::Rock, RadioStation::Pop};
    station.band = station.hdChannel = 1;
    station.frequency = station.serviceId = 2;
    station.programIdentification = station.componentId = station.channelNumber = 3;
    return station;
}

/** A full station to which a record was assigned. */
template <typename Record> RadioStation converted(const Record& record) {
    RadioStation station = fullStation();
    station = record;
    return station;
}

} // namespace

class RadioStationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void metaTypesAreRegisteredAtLoadInOrder() {
        QVERIFY(typeIds[0] >= QMetaType::User);
        for (const int id : typeIds) { QVERIFY(QMetaType(id).isValid()); }
        QVERIFY(std::is_sorted(typeIds.begin(), typeIds.end()));
        QVERIFY(QMetaType(typeIds[4]).flags() & QMetaType::NeedsConstruction);
        QVERIFY(QMetaType(typeIds[5]).flags() & QMetaType::IsEnumeration);
    }

    void equality() {
        using W = WaveBand;
        using D = DabService;
        using C = SatelliteRadioCategory;
        using E = ExtendedSatelliteRadioChannel;
        using R = RadioStation;
        const QStringList remarks{unusualFields<W, &W::aux1, &W::name, &W::aux2, &W::frequency,
                                      &W::programIdentification, &W::rbdsCoding, &W::programType, &W::aux3, &W::aux4,
                                      &W::aux5, &W::aux6, &W::aux7, &W::aux8, &W::hdChannel, &W::aux9, &W::band>(),
            unusualFields<D, &D::ensembleAux1, &D::ensembleAux2, &D::ensembleLabel, &D::ensembleShortLabel,
                &D::serviceAux1, &D::serviceAux2, &D::shortLabel, &D::label, &D::serviceId, &D::componentAux1,
                &D::programType, &D::componentId, &D::componentAux2>(),
            unusualFields<C, &C::id, &C::name, &C::alternateName>(),
            unusualFields<E, &E::aux1, &E::channelNumber, &E::shortName, &E::name, &E::categoryIds, &E::aux2, &E::aux3,
                &E::aux4, &E::categoryNames>(),
            unusualFields<R, &R::name, &R::genres, &R::type, &R::band, &R::frequency, &R::programIdentification,
                &R::pronunciation, &R::readOut, &R::hdChannel, &R::serviceId, &R::componentId, &R::channelNumber>()};
        QCOMPARE(remarks.join(QString()), QString());
        const QString header = u(readFile(u(TEST_SOURCES "src/core/types/radiostation.h")));
        const QString fields = header.section(u("operator=="), -1).section(u("}\n\n"), 1).section(u("};"), 0, 0);
        QCOMPARE(fields.count(QLatin1Char(';')), 12); // those above; fieldCount() fails with constructors
    }

    void caseAndOrderInEquality() {
        SatelliteRadioCategory lower{1, u("größe"), u("x")};
        QVERIFY(lower == (SatelliteRadioCategory{1, u("GRÖßE"), u("X")}));
        ExtendedSatelliteRadioChannel channel;
        channel.shortName = channel.name = u("ä");
        channel.categoryNames = QStringList{u("b"), u("a"), u("b")};
        ExtendedSatelliteRadioChannel other = channel;
        other.shortName = other.name = u("Ä");
        other.categoryNames = QStringList{u("b"), u("b"), u("a")};
        QVERIFY(channel == other);
        QCOMPARE(channel.categoryNames.first(), u("b")); // comparing has not sorted it
        other.categoryNames = QStringList{u("b"), u("A"), u("b")};
        QVERIFY(!(channel == other));
        RadioStation station = fullStation();
        station.name = u("N");
        QVERIFY(!(station == fullStation()));
    }

    void assignmentKeepsTheSubChannel() {
        const RadioStation full = fullStation();
        QVERIFY(RadioStation(full) == full);
        RadioStation station;
        station.hdChannel = 7;
        station = full;
        QCOMPARE(station.hdChannel, 7);
        station = *&station;
        station.hdChannel = full.hdChannel;
        QVERIFY(station == full);
        station = ExtendedSatelliteRadioChannel();
        QCOMPARE(station.genres.size(), 0);
        QCOMPARE(full.genres.size(), 2);
    }

    void conversions() {
        QCOMPARE(printed(converted(WaveBand{1, u("w"), 1, 101, 102, 0, 9, 1, 1, 1, 1, 1, 1, 103, 1, 104})),
            quoted("Radio { type: 1 name: 'w' genres: QVector(0) band: 104 frequency: 101 programIdentification: 102 "
                   "pronunciation: 'p' readOut 'p' hdChannel 103 serviceId: 0 componentId: 0 channelNumber: 0 }|1"));
        const DabService dab{1, 1, u("e"), u("e"), 1, 1, u("x"), u("d"), 4'000'000'000, 1, 29, 65535, 1};
        QCOMPARE(printed(converted(dab)),
            quoted("Radio { type: 2 name: 'd' genres: QVector(9) band: 0 frequency: 0 programIdentification: 0 "
                   "pronunciation: 'p' readOut 'p' hdChannel 0 serviceId: 4000000000 componentId: 65535 "
                   "channelNumber: 0 }|1"));
        const QStringList categories{u("Jzz/Stndrd/Clscl"), u("CLASSICAL"), u("x"), u("y")};
        QCOMPARE(
            printed(converted(ExtendedSatelliteRadioChannel{{1, 5, u("x"), u("s \"ä\""), {}, 1, 1, 1}, categories})),
            quoted("Radio { type: 3 name: 's \\'ä\\'' genres: QVector(0, 5, 20) band: 0 frequency: 0 "
                   "programIdentification: 0 pronunciation: 'p' readOut 'p' hdChannel 0 serviceId: 0 componentId: 0 "
                   "channelNumber: 5 }|1"));
    }

    // Checks the look-ups; the client's listing of all genres shows the entries of the tables.
    void programTypes() {
        for (quint8 code = 0; code <= 32; ++code) { // no table has the last
            const WaveBand rds{0, {}, 0, 0, 0, 0, code};
            const WaveBand rbds{0, {}, 0, 0, 0, 2, code};
            QCOMPARE(converted(rds).genres, QVector<Genre>{rdsGenreToTyxGenreHash.value(code)});
            QCOMPARE(converted(rbds).genres, QVector<Genre>{rbdsGenreToTyxGenreHash.value(code)});
        }
        QVERIFY(genreName(Genre(-1)).isNull() && genreName(Genre(43)).isNull());
        QCOMPARE(rdsGenreToTyxGenreHash.size(), 32);
        QCOMPARE(rbdsGenreToTyxGenreHash.size(), 32);
    }

    void categories_data() { addRows(categoryLists); }
    void categories() {
        const auto& row = currentRow(categoryLists);
        ExtendedSatelliteRadioChannel channel;
        channel.categoryNames = u(row.name).split(QLatin1Char(','));
        QVector<int> genres;
        for (const Genre genre : converted(channel).genres) { genres += genre; }
        QCOMPARE(genres, row.genres);
        QCOMPARE(sdarsGenreToTyxGenreHash.size(), 39);
        QCOMPARE(sdarsGenreToTyxGenreHash.uniqueKeys().size(), 37);
    }
};

QTEST_APPLESS_MAIN(RadioStationTest)
#include "radiostationtest.moc"
