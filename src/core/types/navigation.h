#pragma once

/**
 * @file
 * Records of the voice-controlled destination input and of map databases.
 *
 * The library never interprets the fields named aux… and reserved; operator==, where a record has
 * one, compares them. Identifiers, numbers and flags without a comment are as the navigation system
 * sends them. Thread-safety: the records are plain values.
 */

#include <core/orvcore_export.h>
#include <core/speech/language.h>

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>

/** @addtogroup types
 * @{ */

class QDebug;

/**
 * An element of the navigation database. Its dataType selects one of several payloads.
 *
 * Two descriptors are equal if aux1, aux2, dataType and the selected payload are equal; the other
 * payloads are ignored. Declared as a meta-type; callers that queue it or a list of it must
 * register it.
 */
struct ORVCORE_EXPORT LocationDescriptor
{
    /** The payload of the data types 27 and 54. */
    struct ORVCORE_EXPORT SelectionItemData
    {
        bool operator==(const SelectionItemData& other) const;
        bool operator!=(const SelectionItemData& other) const;

        uint id = 0;
        QString text;
    };

    /** The payload of the data type 33. */
    struct ORVCORE_EXPORT PoiLocationData
    {
        bool operator==(const PoiLocationData& other) const;
        bool operator!=(const PoiLocationData& other) const;

        uint id = 0;
        QList<LocationDescriptor> descriptors;
    };

    /** The payload of the data type 37. */
    struct ORVCORE_EXPORT PoiCategoryItemData
    {
        bool operator==(const PoiCategoryItemData& other) const;
        bool operator!=(const PoiCategoryItemData& other) const;

        quint8 aux1 = 0;
        uint aux2 = 0;
        uint aux3 = 0;
        QString name;
        quint8 aux4 = 0;
    };

    bool operator==(const LocationDescriptor& other) const;
    bool operator!=(const LocationDescriptor& other) const;

    /** Whether the payloads that dataType selects are equal; ignores the dataType of @p other. */
    bool isDataEqual(const LocationDescriptor& other) const;

    /**
     * The payload as text: for 27 and 54 the selection item's text, for 56 the list joined by ",",
     * for all other types the raw data as UTF-8 up to its first NUL.
     */
    QString dataToString() const;

    quint8 aux1 = 0;
    quint8 aux2 = 0;
    quint8 dataType = 0;                 ///< selects the payload by the numbers below
    QByteArray rawData;                  ///< all other numbers: UTF-8, with or without a final NUL
    SelectionItemData selectionItem;     ///< 27 and 54
    PoiLocationData poiLocation;         ///< 33
    PoiCategoryItemData poiCategoryItem; ///< 37
    QStringList stringList;              ///< 56
};

Q_DECLARE_METATYPE(LocationDescriptor)

/** The result of a location input. Declared as a meta-type, not registered. */
struct ORVCORE_EXPORT LocationInputResult
{
    bool operator==(const LocationInputResult& other) const;
    bool operator!=(const LocationInputResult& other) const
    {
        return !(*this == other);
    }

    uint aux1 = 0;
    quint8 aux2 = 0;
    quint16 aux3 = 0;
    quint16 aux4 = 0;
    QList<LocationDescriptor> descriptors;
};

Q_DECLARE_METATYPE(LocationInputResult)

/** An item in the summary of a location input. Declared as a meta-type, not registered. */
struct ORVCORE_EXPORT LocationInputSummaryItem
{
    bool operator==(const LocationInputSummaryItem& other) const;
    bool operator!=(const LocationInputSummaryItem& other) const;

    uint aux1 = 0;
    quint16 aux2 = 0;
    QList<qint32> values;
    QList<LocationDescriptor> descriptors;
};

Q_DECLARE_METATYPE(LocationInputSummaryItem)

/** The state of a destination input. */
struct ORVCORE_EXPORT NavigationContext
{
    /** How a destination is spoken. */
    enum Mode : int
    {
        FullWord = 0,
        Spelling = 1,
        OneShot = 2,
    };

    bool operator==(const NavigationContext& other) const;
    bool operator!=(const NavigationContext& other) const;

    Mode mode = FullWord;
    QList<LocationDescriptor> locations;
    int aux = 0;
};

/** A request to begin or continue a destination input. */
struct NavigationRequest
{
    bool isRunning = false;
    bool isVoiceInputActive = false;
    int retryCount = 0;  ///< as the source sends it
    int intentGroup = 0; ///< as the source sends it
    NavigationContext::Mode mode = NavigationContext::FullWord;
    quint32 reserved = 0;
    Language language = NoLanguage;
};

/** A package of the map database. */
struct DatabaseVersionResult
{
    /** What to do with the package. */
    enum UpdateAction : quint8
    {
        NoAction = 0,
        Install = 1,
        Remove = 2,
    };
    /** Where the package comes from or goes to. */
    enum NaviDataImExportDevice : quint8
    {
        Reserved = 0,
        Hdd = 1,
        Usb = 2,
        Dvd = 3,
        Online = 4,
        Dxs = 5,
    };
    /** What the package updates. */
    enum TypeOfUpdateData : quint8
    {
        BasicDatabase = 0,
        AdditionalContent = 1,
    };

    quint16 tag = 0;
    quint16 naviDatabasePackageId = 0;
    TypeOfUpdateData typeOfUpdateData = BasicDatabase;
    uint sizeOfPackage = 0; ///< as the source sends it
    NaviDataImExportDevice naviDataImExportDevice = Reserved;
    quint8 installedFlag = 0;
    UpdateAction updateAction = NoAction;
    quint8 detailedInformationAvailability = 0;
    QString packageVersionCoverage;
    QString packageVersionVendor;
    QString packageVersionNr;
    QString packageVersionDescription;
};

/** @name Names
 * @{ */

/** The name of the enumerator; "Unknown" for any other value. */
ORVCORE_EXPORT QString convert(DatabaseVersionResult::UpdateAction action);
ORVCORE_EXPORT QString convert(DatabaseVersionResult::NaviDataImExportDevice device);
ORVCORE_EXPORT QString convert(DatabaseVersionResult::TypeOfUpdateData type);
/** @} */

/**
 * Extracts the filter ids of a one-shot destination entry from its attributes. The first id is the
 * value of the first existing key of 9, 329 and 257; the second that of 329, 2 and 258. So without
 * key 9, both may be the value of 329. An id is left unchanged if none of its keys exists.
 */
ORVCORE_EXPORT void extractOneShotFilterIds(const QHash<unsigned short, QByteArray>& attributes,
    QByteArray& firstFilterId, QByteArray& secondFilterId);

/** @name Printers
 * @{ */

/** Writes a blank at the end and leaves the stream in spacing mode. */
ORVCORE_EXPORT QDebug& operator<<(QDebug& stream, const NavigationContext::Mode& mode);
ORVCORE_EXPORT QDebug& operator<<(QDebug& stream, const DatabaseVersionResult& result);
ORVCORE_EXPORT QDebug& operator<<(QDebug& stream, const NavigationRequest& request);

inline QDebug& operator<<(QDebug&& stream, const NavigationContext::Mode& mode)
{
    return stream << mode;
}
inline QDebug& operator<<(QDebug&& stream, const DatabaseVersionResult& result)
{
    return stream << result;
}
inline QDebug& operator<<(QDebug&& stream, const NavigationRequest& request)
{
    return stream << request;
}
/** @} */

/** @} */
