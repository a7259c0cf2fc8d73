#pragma once

/**
 * @file
 * Radio stations: one record for all speech services, and one for each source that converts to it.
 *
 * The library compares the fields named aux… but never interprets them. Frequencies, bands,
 * identifiers and channel numbers are as the source sends them, in its units: the library neither
 * converts nor checks them. Thread-safety: the records are plain values; conversions may run on any
 * thread once the library is loaded.
 */

#include <core/orvcore_export.h>

#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

/** @addtogroup types
 * @{ */

class QDebug;

/** The source of a station. The library registers the meta-type "RadioType" at load. */
enum RadioType : int
{
    UndefinedRadio = 0,
    AmFmRadio = 1,
    DabRadio = 2,
    SatelliteRadio = 3,
};

/** An AM or FM station with its RDS or RBDS data. */
struct ORVCORE_EXPORT WaveBand
{
    bool operator==(const WaveBand& other) const;
    bool operator!=(const WaveBand& other) const
    {
        return !(*this == other);
    }

    quint8 aux1 = 0;
    QString name;
    uint aux2 = 0;
    uint frequency = 0;                ///< as the tuner sends it
    quint16 programIdentification = 0; ///< RDS or RBDS code
    uint rbdsCoding = 0;               ///< 0 for RDS codes, anything else for RBDS
    quint8 programType = 0;            ///< a PTY code, 0 to 31
    quint8 aux3 = 0;
    quint8 aux4 = 0;
    uint aux5 = 0;
    quint8 aux6 = 0;
    uint aux7 = 0;
    uint aux8 = 0;
    int hdChannel = 0; ///< HD Radio sub-channel
    quint8 aux9 = 0;
    int band = 0; ///< as the tuner sends it
};

/** A DAB service component with its ensemble. */
struct ORVCORE_EXPORT DabService
{
    bool operator==(const DabService& other) const;
    bool operator!=(const DabService& other) const
    {
        return !(*this == other);
    }

    quint16 ensembleAux1 = 0;
    quint8 ensembleAux2 = 0;
    QString ensembleLabel;
    QString ensembleShortLabel;
    quint16 serviceAux1 = 0;
    quint8 serviceAux2 = 0;
    QString shortLabel;
    QString label;
    uint serviceId = 0; ///< as the tuner sends it
    quint16 componentAux1 = 0;
    quint8 programType = 0;  ///< an RDS PTY code, 0 to 31
    quint16 componentId = 0; ///< as the tuner sends it
    uint componentAux2 = 0;
};

/** A category of satellite-radio channels; names compare without regard to case. */
struct ORVCORE_EXPORT SatelliteRadioCategory
{
    bool operator==(const SatelliteRadioCategory& other) const;
    bool operator!=(const SatelliteRadioCategory& other) const
    {
        return !(*this == other);
    }

    quint16 id = 0;
    QString name;
    QString alternateName;
};

/** A satellite-radio channel; names compare without regard to case. */
struct ORVCORE_EXPORT SatelliteRadioChannel
{
    bool operator==(const SatelliteRadioChannel& other) const;
    bool operator!=(const SatelliteRadioChannel& other) const
    {
        return !(*this == other);
    }

    quint16 aux1 = 0;
    quint16 channelNumber = 0;
    QString shortName;
    QString name;
    QList<quint16> categoryIds;
    uint aux2 = 0;
    quint8 aux3 = 0;
    quint8 aux4 = 0;
};

/** A satellite-radio channel with its category names; comparison ignores their order. */
struct ORVCORE_EXPORT ExtendedSatelliteRadioChannel : SatelliteRadioChannel
{
    bool operator==(const ExtendedSatelliteRadioChannel& other) const;
    bool operator!=(const ExtendedSatelliteRadioChannel& other) const
    {
        return !(*this == other);
    }

    QStringList categoryNames;
};

/**
 * A station of any source. The library registers the meta-type "RadioStation" at load.
 *
 * Assigning a source's record copies the fields that a station has too, maps the programme type or
 * category names to genres (see radiogenre.h), and sets the fields of other sources to zero. It
 * changes neither pronunciation nor readOut.
 */
class ORVCORE_EXPORT RadioStation
{
public:
    /** The library registers the meta-type "RadioStation::Genre" at load. */
    enum Genre : int
    {
        Unknown = 0,
        AdultHits = 1,
        Canadian = 2,
        Charts = 3,
        Children = 4,
        Classical = 5,
        Comedy = 6,
        Country = 7,
        Culture = 8,
        Documentary = 9,
        Drama = 10,
        EasyListening = 11,
        Education = 12,
        Electronic = 13,
        Entertainment = 14,
        Finance = 15,
        Folk = 16,
        HipHop = 17,
        MarqueeTalk = 18,
        PublicRadio = 19,
        Jazz = 20,
        Latino = 21,
        Leisure = 22,
        Baseball = 23,
        Basketball = 24,
        Football = 25,
        Hockey = 26,
        NationalMusic = 27,
        News = 28,
        Oldies = 29,
        Party = 30,
        Politics = 31,
        Pop = 32,
        Religion = 33,
        RhythmAndBlues = 34,
        Rock = 35,
        Science = 36,
        Society = 37,
        Soft = 38,
        Sports = 39,
        Talk = 40,
        Travel = 41,
        Weather = 42,
    };

    RadioStation();
    RadioStation(const RadioStation& other);
    ~RadioStation();

    /** Copies all fields except hdChannel, which only the copy constructor copies. */
    RadioStation& operator=(const RadioStation& other);

    /** Sets one genre, that of the PTY code. */
    RadioStation& operator=(const WaveBand& station);

    /** Sets one genre, that of the RDS PTY code, and the service's label as the name. */
    RadioStation& operator=(const DabService& service);

    /** Sets the genres of all category names, sorted, each once; an unknown name is Unknown. */
    RadioStation& operator=(const ExtendedSatelliteRadioChannel& channel);

    bool operator==(const RadioStation& other) const;
    bool operator!=(const RadioStation& other) const
    {
        return !(*this == other);
    }

    QString name;
    QVector<Genre> genres;
    RadioType type = UndefinedRadio;
    int band = 0;                      ///< wave band of an AM or FM station, as the tuner sends it
    uint frequency = 0;                ///< of an AM or FM station, as the tuner sends it
    quint16 programIdentification = 0; ///< RDS or RBDS code of an AM or FM station
    QString pronunciation;             ///< the name as it is spoken, for the recogniser
    QString readOut;                   ///< the name as it is read out, for speech output
    int hdChannel = 0;                 ///< HD Radio sub-channel of an AM or FM station
    uint serviceId = 0;                ///< of a DAB service
    quint16 componentId = 0;           ///< of a DAB service
    quint16 channelNumber = 0;         ///< of a satellite-radio channel
};

Q_DECLARE_METATYPE(RadioType)
Q_DECLARE_METATYPE(RadioStation)
Q_DECLARE_METATYPE(RadioStation::Genre)

/** Prints all fields and leaves the stream in no-space mode. */
ORVCORE_EXPORT QDebug& operator<<(QDebug& stream, const RadioStation& station);

/** For a temporary stream. */
inline QDebug& operator<<(QDebug&& stream, const RadioStation& station)
{
    return stream << station;
}

/** @} */
