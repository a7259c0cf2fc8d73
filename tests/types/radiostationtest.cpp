#include <core/speech/speechcommon.h>
#include <core/types/radiogenre.h>
#include <core/types/radiostation.h>

#include <support/fields.h>
#include <support/helpers.h>

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
    for (const RadioStation::Genre genre : qAsConst(station.genres)) {
        genres += genre;
    }
    return genres;
}

/** A station with all fields set, of which conversions keep some and zero others. */
RadioStation fullStation()
{
    RadioStation station;
    station.name = u("n");
    station.genres = {RadioStation::Rock, RadioStation::Pop};
    station.band = station.hdChannel = 1;
    station.frequency = station.serviceId = 2;
    station.programIdentification = station.componentId = station.channelNumber = 3;
    station.pronunciation = u("p");
    station.readOut = u("r");
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
        QVERIFY(std::is_sorted(typeIds.begin(), typeIds.end(), std::less_equal<int>()));
        const auto flags = QMetaType::typeFlags(typeIds[4]);
        QVERIFY(!(flags & QMetaType::MovableType) && (flags & QMetaType::NeedsConstruction));
        QVERIFY(QMetaType::typeFlags(typeIds[5]) & QMetaType::IsEnumeration);
    }

    void equality()
    {
        QCOMPARE(countingFields<WaveBand>(&WaveBand::aux1, &WaveBand::name, &WaveBand::aux2, &WaveBand::frequency,
                     &WaveBand::programIdentification, &WaveBand::rbdsCoding, &WaveBand::programType, &WaveBand::aux3,
                     &WaveBand::aux4, &WaveBand::aux5, &WaveBand::aux6, &WaveBand::aux7, &WaveBand::aux8,
                     &WaveBand::hdChannel, &WaveBand::aux9, &WaveBand::band),
            u("1").repeated(16));
        QCOMPARE(
            countingFields<DabService>(&DabService::ensembleAux1, &DabService::ensembleAux2, &DabService::ensembleLabel,
                &DabService::ensembleShortLabel, &DabService::serviceAux1, &DabService::serviceAux2,
                &DabService::shortLabel, &DabService::label, &DabService::serviceId, &DabService::componentAux1,
                &DabService::programType, &DabService::componentId, &DabService::componentAux2),
            u("1").repeated(13));
        QCOMPARE(countingFields<SatelliteRadioCategory>(&SatelliteRadioCategory::id, &SatelliteRadioCategory::name,
                     &SatelliteRadioCategory::alternateName),
            u("111"));
        using Channel = ExtendedSatelliteRadioChannel;
        QCOMPARE(countingFields<Channel>(&Channel::aux1, &Channel::channelNumber, &Channel::shortName, &Channel::name,
                     &Channel::categoryIds, &Channel::aux2, &Channel::aux3, &Channel::aux4, &Channel::categoryNames),
            u("1").repeated(9));
        QCOMPARE(countingFields<RadioStation>(&RadioStation::name, &RadioStation::genres, &RadioStation::type,
                     &RadioStation::band, &RadioStation::frequency, &RadioStation::programIdentification,
                     &RadioStation::pronunciation, &RadioStation::readOut, &RadioStation::hdChannel,
                     &RadioStation::serviceId, &RadioStation::componentId, &RadioStation::channelNumber),
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
        QCOMPARE(printed(station),
            u("Radio { type: 1 name: \"w\" genres: QVector(0) band: 104 frequency: 101 "
              "programIdentification: 102 pronunciation: \"p\" readOut \"r\" hdChannel 103 serviceId: 0 componentId: 0 "
              "channelNumber: 0 }|1"));
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
        QCOMPARE(printed(station),
            u("Radio { type: 2 name: \"d\" genres: QVector(9) band: 0 frequency: 0 "
              "programIdentification: 0 pronunciation: \"p\" readOut \"r\" hdChannel 0 serviceId: 4000000000 "
              "componentId: 65535 channelNumber: 0 }|1"));

        ExtendedSatelliteRadioChannel channel;
        channel.name = u("s \"ä\"");
        channel.channelNumber = 5;
        channel.categoryNames = QStringList{u("Jzz/Stndrd/Clscl"), u("CLASSICAL"), u("x"), u("y")};
        station = fullStation();
        station = channel;
        QCOMPARE(printed(station),
            u("Radio { type: 3 name: \"s \\\"ä\\\"\" genres: QVector(0, 5, 20) band: 0 "
              "frequency: 0 programIdentification: 0 pronunciation: \"p\" readOut \"r\" hdChannel 0 serviceId: 0 "
              "componentId: 0 channelNumber: 5 }|1"));
        QCOMPARE(printed(RadioStation()),
            u("Radio { type: 0 name: \"\" genres: QVector() band: 0 frequency: 0 "
              "programIdentification: 0 pronunciation: \"\" readOut \"\" hdChannel 0 serviceId: 0 componentId: 0 "
              "channelNumber: 0 }|1"));
    }

    void genres()
    {
        // By code, as numbers, to hold against the names in the table.
        const int rds[] = {0, 28, 28, 28, 39, 12, 10, 8, 36, 0, 32, 35, 11, 5, 5, 0, 42, 15, 4, 37, 33, 0, 41, 22, 20,
            7, 27, 29, 16, 9, 0, 0};
        const int rbds[] = {0, 28, 28, 39, 40, 35, 35, 1, 35, 3, 7, 29, 38, 29, 20, 5, 34, 34, 12, 33, 33, 37, 19, 12,
            21, 21, 17, 0, 0, 42, 0, 0};
        for (int code = 0; code < 32; ++code) {
            QCOMPARE(int(rdsGenreToTyxGenreHash.value(code)), rds[code]);
            QCOMPARE(int(rbdsGenreToTyxGenreHash.value(code)), rbds[code]);
        }
        QCOMPARE(rdsGenreToTyxGenreHash.size(), 32);
        QCOMPARE(rbdsGenreToTyxGenreHash.size(), 32);
        QCOMPARE(sdarsGenreToTyxGenreHash.size(), 39);
        QCOMPARE(sdarsGenreToTyxGenreHash.uniqueKeys().size(), 37);
        QCOMPARE(sdarsGenreToTyxGenreHash.values(u("jzz/stndrd/clscl")),
            (QList<RadioStation::Genre>{RadioStation::Classical, RadioStation::Jazz})); // the later one first
        QCOMPARE(converted({u("Deportes en Vivo")}), QVector<int>{21});
        QCOMPARE(converted({u("news/POLITICS"), u("News/PublicRadio")}), QVector<int>({28, 31}));
        QCOMPARE(converted({u("Rock "), u("")}), QVector<int>{0});
        QCOMPARE(converted({u("Rock"), u("More"), u("no such"), u("rock")}), QVector<int>({0, 35}));
        QCOMPARE(converted({}), QVector<int>());
    }
};

QTEST_APPLESS_MAIN(RadioStationTest)
#include "radiostationtest.moc"
