#include <core/speech/speechcommon.h>
#include <core/types/radiogenre.h>
#include <core/types/radiostation.h>

#include <support/fields.h>

#include <QDebug>
#include <QTest>

namespace {

// Read while this program's own statics are set up, after the library was loaded.
const QVector<int> typeIds{QMetaType::type("Language"), QMetaType::type("QList<Language>"),
    QMetaType::type("PromptData"), QMetaType::type("RadioType"), QMetaType::type("RadioStation"),
    QMetaType::type("RadioStation::Genre")};

QVector<int> converted(const QStringList& categoryNames)
{
    ExtendedSatelliteRadioChannel channel;
    channel.categoryNames = categoryNames;
    RadioStation station;
    station = channel;
    QVector<int> genres;
    for (const RadioStation::Genre genre : qAsConst(station.genres)) { genres += genre; }
    return genres;
}

/** A station with all fields set, of which conversions keep some and zero others. */
RadioStation fullStation()
{
    RadioStation station;
    station.name = station.pronunciation = station.readOut = u("p");
    station.genres = {RadioStation::Rock, RadioStation::Pop};
    station.band = station.hdChannel = 1;
    station.frequency = station.serviceId = 2;
    station.programIdentification = station.componentId = station.channelNumber = 3;
    return station;
}

} // namespace

class RadioStationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaTypesAreRegisteredAtLoadInOrder()
    {
        QVERIFY(typeIds[0] >= QMetaType::User);
        for (const int id : typeIds) { QVERIFY(QVariant(id, nullptr).constData() != nullptr); }
        QVERIFY(std::is_sorted(typeIds.begin(), typeIds.end()));
        const auto flags = QMetaType::typeFlags(typeIds[4]);
        QVERIFY(!(flags & QMetaType::MovableType) && (flags & QMetaType::NeedsConstruction));
        QVERIFY(QMetaType::typeFlags(typeIds[5]) & QMetaType::IsEnumeration);
    }

    void equality()
    {
        using W = WaveBand;
        QCOMPARE(countingFields<W>(&W::aux1, &W::name, &W::aux2, &W::frequency, &W::programIdentification,
                     &W::rbdsCoding, &W::programType, &W::aux3, &W::aux4, &W::aux5, &W::aux6, &W::aux7, &W::aux8,
                     &W::hdChannel, &W::aux9, &W::band),
            u("1").repeated(16));
        using D = DabService;
        QCOMPARE(countingFields<D>(&D::ensembleAux1, &D::ensembleAux2, &D::ensembleLabel, &D::ensembleShortLabel,
                     &D::serviceAux1, &D::serviceAux2, &D::shortLabel, &D::label, &D::serviceId, &D::componentAux1,
                     &D::programType, &D::componentId, &D::componentAux2),
            u("1").repeated(13));
        using C = SatelliteRadioCategory;
        QCOMPARE(countingFields<C>(&C::id, &C::name, &C::alternateName), u("111"));
        using E = ExtendedSatelliteRadioChannel;
        QCOMPARE(countingFields<E>(&E::aux1, &E::channelNumber, &E::shortName, &E::name, &E::categoryIds, &E::aux2,
                     &E::aux3, &E::aux4, &E::categoryNames),
            u("1").repeated(9));
        using R = RadioStation;
        QCOMPARE(countingFields<R>(&R::name, &R::genres, &R::type, &R::band, &R::frequency, &R::programIdentification,
                     &R::pronunciation, &R::readOut, &R::hdChannel, &R::serviceId, &R::componentId, &R::channelNumber),
            u("1").repeated(12));
    }

    void caseAndOrderInEquality()
    {
        SatelliteRadioCategory lower{1, u("größe"), u("x")};
        QVERIFY(lower == (SatelliteRadioCategory{1, u("GRÖßE"), u("X")}));
        ExtendedSatelliteRadioChannel channel;
        channel.shortName = channel.name = u("ä");
        channel.categoryNames = QStringList{u("b"), u("a"), u("b")};
        ExtendedSatelliteRadioChannel other = channel;
        other.shortName = other.name = u("Ä");
        other.categoryNames = QStringList{u("b"), u("b"), u("a")};
        QVERIFY(channel == other);
        QCOMPARE(channel.categoryNames.first(), u("b")); // comparing left it as it was
        other.categoryNames = QStringList{u("b"), u("A"), u("b")};
        QVERIFY(!(channel == other));
        RadioStation station = fullStation();
        station.name = u("N");
        QVERIFY(!(station == fullStation()));
    }

    void assignmentKeepsTheSubChannel()
    {
        const RadioStation full = fullStation();
        QVERIFY(RadioStation(full) == full);
        RadioStation station;
        station.hdChannel = 7;
        station = full;
        QCOMPARE(station.hdChannel, 7);
        station = *&station;
        station.hdChannel = full.hdChannel;
        QVERIFY(station == full);
    }

    void conversions()
    {
        WaveBand waveBand;
        waveBand.name = u("w");
        waveBand.frequency = 101;
        waveBand.programIdentification = 102;
        waveBand.hdChannel = 103;
        waveBand.band = 104;
        waveBand.programType = 9;
        RadioStation station = fullStation();
        const QVector<RadioStation::Genre> shared = station.genres;
        station = waveBand;
        QCOMPARE(printed(station), expectedPrint("wave band"));
        QCOMPARE(shared.size(), 2);
        waveBand.rbdsCoding = 2;
        station = waveBand;
        QCOMPARE(station.genres, QVector<RadioStation::Genre>{RadioStation::Charts});
        waveBand.programType = 32;
        station = waveBand;
        QCOMPARE(station.genres, QVector<RadioStation::Genre>{RadioStation::Unknown});

        DabService service;
        service.label = u("d");
        service.shortLabel = u("x");
        service.serviceId = 4'000'000'000;
        service.componentId = 65535;
        service.programType = 29;
        station = fullStation();
        station = service;
        QCOMPARE(printed(station), expectedPrint("DAB service"));

        ExtendedSatelliteRadioChannel channel;
        channel.name = u("s \"ä\"");
        channel.channelNumber = 5;
        channel.categoryNames = QStringList{u("Jzz/Stndrd/Clscl"), u("CLASSICAL"), u("x"), u("y")};
        station = fullStation();
        station = channel;
        QCOMPARE(printed(station), expectedPrint("satellite channel"));
        QCOMPARE(printed(RadioStation()), expectedPrint("default station"));
    }

    void genres()
    {
        // The sums and some codes of which the vocabularies think differently.
        int rdsSum = 0;
        int rbdsSum = 0;
        for (int code = 0; code < 32; ++code) {
            rdsSum += code * rdsGenreToTyxGenreHash[code];
            rbdsSum += code * rbdsGenreToTyxGenreHash[code];
        }
        QCOMPARE(rdsSum, 8379);
        QCOMPARE(rbdsSum, 9422);
        QCOMPARE(rdsGenreToTyxGenreHash.size(), 32);
        QCOMPARE(rbdsGenreToTyxGenreHash.size(), 32);
        QCOMPARE(sdarsGenreToTyxGenreHash.size(), 39);
        QCOMPARE(sdarsGenreToTyxGenreHash.uniqueKeys().size(), 37);
        QCOMPARE(sdarsGenreToTyxGenreHash.values(u("jzz/stndrd/clscl")),
            (QList<RadioStation::Genre>{RadioStation::Classical, RadioStation::Jazz})); // the later one first
        QCOMPARE(genreName(RadioStation::Jazz) + genreName(RadioStation::Weather), u("JazzWeather"));
        QVERIFY(genreName(RadioStation::Genre(-1)).isNull() && genreName(RadioStation::Genre(43)).isNull());
        QCOMPARE(converted({u("Deportes en Vivo")}), QVector<int>{21});
        QCOMPARE(converted({u("news/POLITICS"), u("News/PublicRadio")}), QVector<int>({28, 31}));
        QCOMPARE(converted({u("Rock "), u("")}), QVector<int>{0});
        QCOMPARE(converted({u("Rock"), u("More"), u("no such"), u("rock")}), QVector<int>({0, 35}));
        QCOMPARE(converted({}), QVector<int>());
    }
};

QTEST_APPLESS_MAIN(RadioStationTest)
#include "radiostationtest.moc"
