#include <core/types/radiostation.h>

#include <core/types/radiogenre.h>

#include <QDebug>

#include <algorithm>
#include <tuple>

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

void registerMetaTypes()
{
    qRegisterMetaType<RadioType>();
    qRegisterMetaType<RadioStation>();
    qRegisterMetaType<RadioStation::Genre>();
}
Q_CONSTRUCTOR_FUNCTION(registerMetaTypes)

} // namespace

static_assert(
    sizeof(RadioType) == 4 && sizeof(RadioStation::Genre) == 4
        && sizeof(WaveBand::programIdentification) == 2 && sizeof(WaveBand::programType) == 1
        && sizeof(DabService::ensembleAux1) == 2 && sizeof(DabService::serviceAux1) == 2
        && sizeof(DabService::componentAux1) == 2 && sizeof(DabService::componentId) == 2
        && sizeof(DabService::programType) == 1 && sizeof(SatelliteRadioCategory::id) == 2
        && sizeof(SatelliteRadioChannel::aux1) == 2
        && sizeof(SatelliteRadioChannel::channelNumber) == 2
        && sizeof(RadioStation::programIdentification) == 2
        && sizeof(RadioStation::componentId) == 2 && sizeof(RadioStation::channelNumber) == 2,
    "sizes are interface");

bool WaveBand::operator==(const WaveBand& other) const
{
    const auto fields = [](const WaveBand& r) {
        return std::tie(r.aux1, r.name, r.aux2, r.frequency, r.programIdentification, r.rbdsCoding,
            r.programType, r.aux3, r.aux4, r.aux5, r.aux6, r.aux7, r.aux8, r.hdChannel, r.aux9,
            r.band);
    };
    return fields(*this) == fields(other);
}

bool DabService::operator==(const DabService& other) const
{
    const auto fields = [](const DabService& r) {
        return std::tie(r.ensembleAux1, r.ensembleAux2, r.ensembleShortLabel, r.ensembleLabel,
            r.serviceAux1, r.serviceAux2, r.label, r.shortLabel, r.serviceId, r.componentAux1,
            r.programType, r.componentId, r.componentAux2);
    };
    return fields(*this) == fields(other);
}

bool SatelliteRadioCategory::operator==(const SatelliteRadioCategory& other) const
{
    return id == other.id && equalInAnyCase(name, other.name)
           && equalInAnyCase(alternateName, other.alternateName);
}

bool SatelliteRadioChannel::operator==(const SatelliteRadioChannel& other) const
{
    return aux1 == other.aux1 && channelNumber == other.channelNumber
           && equalInAnyCase(shortName, other.shortName) && equalInAnyCase(name, other.name)
           && categoryIds == other.categoryIds && aux2 == other.aux2 && aux3 == other.aux3
           && aux4 == other.aux4;
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
    // hdChannel stays: a station keeps its sub-channel when another one is assigned.
    serviceId = other.serviceId;
    componentId = other.componentId;
    channelNumber = other.channelNumber;
    return *this;
}

RadioStation& RadioStation::operator=(const WaveBand& station)
{
    type = AmFmRadio;
    name = station.name;
    programIdentification = station.programIdentification;
    frequency = station.frequency;
    band = station.band;
    hdChannel = station.hdChannel;
    const auto& table = station.rbdsCoding != 0 ? rbdsGenreToTyxGenreHash : rdsGenreToTyxGenreHash;
    genres.clear();
    genres.append(table.value(station.programType));
    serviceId = 0;
    componentId = 0;
    channelNumber = 0;
    return *this;
}

RadioStation& RadioStation::operator=(const DabService& service)
{
    type = DabRadio;
    name = service.label;
    serviceId = service.serviceId;
    componentId = service.componentId;
    genres.clear();
    genres.append(rdsGenreToTyxGenreHash.value(service.programType));
    channelNumber = 0;
    band = 0;
    hdChannel = 0;
    frequency = 0;
    programIdentification = 0;
    return *this;
}

RadioStation& RadioStation::operator=(const ExtendedSatelliteRadioChannel& channel)
{
    type = SatelliteRadio;
    name = channel.name;
    channelNumber = channel.channelNumber;
    genres.clear();
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
    serviceId = 0;
    band = 0;
    hdChannel = 0;
    frequency = 0;
    programIdentification = 0;
    componentId = 0;
    return *this;
}

bool RadioStation::operator==(const RadioStation& other) const
{
    const auto fields = [](const RadioStation& r) {
        return std::tie(r.type, r.band, r.genres, r.name, r.frequency, r.programIdentification,
            r.pronunciation, r.readOut, r.hdChannel, r.serviceId, r.componentId, r.channelNumber);
    };
    return fields(*this) == fields(other);
}

QDebug& operator<<(QDebug& stream, const RadioStation& station)
{
    stream.nospace() << "Radio {"
                     << " type: " << int(station.type) << " name: " << station.name
                     << " genres: " << station.genres << " band: " << station.band
                     << " frequency: " << station.frequency
                     << " programIdentification: " << station.programIdentification
                     << " pronunciation: " << station.pronunciation << " readOut "
                     << station.readOut << " hdChannel " << station.hdChannel
                     << " serviceId: " << station.serviceId
                     << " componentId: " << station.componentId
                     << " channelNumber: " << station.channelNumber << " }";
    return stream;
}
