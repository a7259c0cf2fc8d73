#include <core/types/radiostation.h>

#include <core/types/radiogenre.h>

#include <QDebug>

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

bool equalInAnyCase(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

QStringList sorted(QStringList names)
{
    names.sort();
    return names;
}

void appendOnce(QVector<RadioStation::Genre>& genres, RadioStation::Genre genre)
{
    if (!genres.contains(genre)) {
        genres.append(genre);
    }
}

/** Sets the type; clears the genres and the fields that belong to one kind of source. */
void reset(RadioStation& station, RadioType type)
{
    station.type = type;
    station.genres.clear();
    station.band = 0;
    station.frequency = 0;
    station.programIdentification = 0;
    station.hdChannel = 0;
    station.serviceId = 0;
    station.componentId = 0;
    station.channelNumber = 0;
}

void registerMetaTypes()
{
    qRegisterMetaType<RadioType>();
    qRegisterMetaType<RadioStation>();
    qRegisterMetaType<RadioStation::Genre>();
}
Q_CONSTRUCTOR_FUNCTION(registerMetaTypes)

} // namespace

static_assert(sizeof(RadioType) == 4 && sizeof(RadioStation::Genre) == 4, "sizes are interface");

bool WaveBand::operator==(const WaveBand& other) const
{
    return std::tie(aux1, name, aux2, frequency, programIdentification, rbdsCoding, programType,
               aux3, aux4, aux5, aux6, aux7, aux8, hdChannel, aux9, band)
           == std::tie(other.aux1, other.name, other.aux2, other.frequency,
               other.programIdentification, other.rbdsCoding, other.programType, other.aux3,
               other.aux4, other.aux5, other.aux6, other.aux7, other.aux8, other.hdChannel,
               other.aux9, other.band);
}

bool DabService::operator==(const DabService& other) const
{
    return std::tie(ensembleAux1, ensembleAux2, ensembleShortLabel, ensembleLabel, serviceAux1,
               serviceAux2, label, shortLabel, serviceId, componentAux1, programType, componentId,
               componentAux2)
           == std::tie(other.ensembleAux1, other.ensembleAux2, other.ensembleShortLabel,
               other.ensembleLabel, other.serviceAux1, other.serviceAux2, other.label,
               other.shortLabel, other.serviceId, other.componentAux1, other.programType,
               other.componentId, other.componentAux2);
}

bool SatelliteRadioCategory::operator==(const SatelliteRadioCategory& other) const
{
    return id == other.id && equalInAnyCase(name, other.name)
           && equalInAnyCase(alternateName, other.alternateName);
}

bool SatelliteRadioChannel::operator==(const SatelliteRadioChannel& other) const
{
    return std::tie(aux1, channelNumber, categoryIds, aux2, aux3, aux4)
               == std::tie(other.aux1, other.channelNumber, other.categoryIds, other.aux2,
                   other.aux3, other.aux4)
           && equalInAnyCase(shortName, other.shortName) && equalInAnyCase(name, other.name);
}

bool ExtendedSatelliteRadioChannel::operator==(const ExtendedSatelliteRadioChannel& other) const
{
    return SatelliteRadioChannel::operator==(other)
           && sorted(categoryNames) == sorted(other.categoryNames);
}

RadioStation::RadioStation() = default;
RadioStation::RadioStation(const RadioStation& other) = default;
RadioStation::~RadioStation() = default;

RadioStation& RadioStation::operator=(const RadioStation& other)
{
    name = other.name;
    genres = other.genres;
    type = other.type;
    band = other.band;
    frequency = other.frequency;
    programIdentification = other.programIdentification;
    pronunciation = other.pronunciation;
    readOut = other.readOut;
    // Not hdChannel: a station keeps its own sub-channel.
    serviceId = other.serviceId;
    componentId = other.componentId;
    channelNumber = other.channelNumber;
    return *this;
}

RadioStation& RadioStation::operator=(const WaveBand& station)
{
    reset(*this, AmFmRadio);
    name = station.name;
    programIdentification = station.programIdentification;
    frequency = station.frequency;
    band = station.band;
    hdChannel = station.hdChannel;
    const auto& table = station.rbdsCoding != 0 ? rbdsGenreToTyxGenreHash : rdsGenreToTyxGenreHash;
    genres.append(table.value(station.programType));
    return *this;
}

RadioStation& RadioStation::operator=(const DabService& service)
{
    reset(*this, DabRadio);
    name = service.label;
    serviceId = service.serviceId;
    componentId = service.componentId;
    genres.append(rdsGenreToTyxGenreHash.value(service.programType));
    return *this;
}

RadioStation& RadioStation::operator=(const ExtendedSatelliteRadioChannel& channel)
{
    reset(*this, SatelliteRadio);
    name = channel.name;
    channelNumber = channel.channelNumber;
    genres.reserve(channel.categoryNames.size());
    for (const QString& categoryName : channel.categoryNames) {
        const QString key = categoryName.toLower();
        auto genre = sdarsGenreToTyxGenreHash.constFind(key);
        if (genre == sdarsGenreToTyxGenreHash.constEnd()) {
            appendOnce(genres, Unknown);
        }
        for (; genre != sdarsGenreToTyxGenreHash.constEnd() && genre.key() == key; ++genre) {
            appendOnce(genres, *genre);
        }
    }
    std::sort(genres.begin(), genres.end());
    return *this;
}

bool RadioStation::operator==(const RadioStation& other) const
{
    return std::tie(type, band, genres, name, frequency, programIdentification, pronunciation,
               readOut, hdChannel, serviceId, componentId, channelNumber)
           == std::tie(other.type, other.band, other.genres, other.name, other.frequency,
               other.programIdentification, other.pronunciation, other.readOut, other.hdChannel,
               other.serviceId, other.componentId, other.channelNumber);
}

QDebug& operator<<(QDebug& stream, const RadioStation& station)
{
    stream.nospace() << "Radio {"
                     << " type: " << int(station.type) << " name: " << station.name
                     << " genres: QVector(";
    const char* separator = "";
    for (const RadioStation::Genre genre : station.genres) {
        stream << std::exchange(separator, ", ") << int(genre);
    }
    // Written by hand: Qt 6 prints a vector as "QList(…)".
    stream << ") band: " << station.band << " frequency: " << station.frequency
           << " programIdentification: " << station.programIdentification
           << " pronunciation: " << station.pronunciation << " readOut " << station.readOut
           << " hdChannel " << station.hdChannel << " serviceId: " << station.serviceId
           << " componentId: " << station.componentId << " channelNumber: " << station.channelNumber
           << " }";
    return stream;
}
