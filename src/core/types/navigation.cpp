#include <core/types/navigation.h>

#include <QDebug>

#include <algorithm>
#include <tuple>

static_assert(sizeof(NavigationContext::Mode) == 4
                  && sizeof(DatabaseVersionResult::UpdateAction) == 1
                  && sizeof(DatabaseVersionResult::NaviDataImExportDevice) == 1
                  && sizeof(DatabaseVersionResult::TypeOfUpdateData) == 1,
    "sizes are interface");

namespace {

constexpr const char* updateActions[] = {"NoAction", "Install", "Remove"};
constexpr const char* devices[] = {"Reserved", "Hdd", "Usb", "Dvd", "Online", "Dxs"};
constexpr const char* updateDataTypes[] = {"BasicDatabase", "AdditionalContent"};
constexpr const char* modes[] = {"FullWord", "Spelling", "OneShot"};

template <std::size_t count>
const char* nameOf(int value, const char* const (&names)[count], const char* unknown)
{
    return value >= 0 && value < int(count) ? names[value] : unknown;
}

template <std::size_t count>
QString textOf(int value, const char* const (&names)[count])
{
    return QString::fromLatin1(nameOf(value, names, "Unknown"));
}

/** Copies the value of the first existing key of @p keys to @p value. */
void extractFirst(const QHash<unsigned short, QByteArray>& attributes,
    std::initializer_list<unsigned short> keys, QByteArray& value)
{
    for (const unsigned short key : keys) {
        const auto attribute = attributes.constFind(key);
        if (attribute != attributes.constEnd()) {
            value = *attribute;
            return;
        }
    }
}

} // namespace

bool LocationDescriptor::SelectionItemData::operator==(const SelectionItemData& other) const
{
    return std::tie(id, text) == std::tie(other.id, other.text);
}

bool LocationDescriptor::SelectionItemData::operator!=(const SelectionItemData& other) const
{
    return !(*this == other);
}

bool LocationDescriptor::PoiLocationData::operator==(const PoiLocationData& other) const
{
    return std::tie(id, descriptors) == std::tie(other.id, other.descriptors);
}

bool LocationDescriptor::PoiLocationData::operator!=(const PoiLocationData& other) const
{
    return !(*this == other);
}

bool LocationDescriptor::PoiCategoryItemData::operator==(const PoiCategoryItemData& other) const
{
    return std::tie(aux1, aux2, aux3, name, aux4)
           == std::tie(other.aux1, other.aux2, other.aux3, other.name, other.aux4);
}

bool LocationDescriptor::PoiCategoryItemData::operator!=(const PoiCategoryItemData& other) const
{
    return !(*this == other);
}

bool LocationDescriptor::operator==(const LocationDescriptor& other) const
{
    return std::tie(aux1, aux2, dataType) == std::tie(other.aux1, other.aux2, other.dataType)
           && isDataEqual(other);
}

bool LocationDescriptor::operator!=(const LocationDescriptor& other) const
{
    return !(*this == other);
}

bool LocationDescriptor::isDataEqual(const LocationDescriptor& other) const
{
    switch (dataType) {
    case 27:
    case 54:
        return selectionItem == other.selectionItem;
    case 33:
        return poiLocation == other.poiLocation;
    case 37:
        return poiCategoryItem == other.poiCategoryItem;
    case 56:
        return stringList == other.stringList;
    default:
        return rawData == other.rawData;
    }
}

QString LocationDescriptor::dataToString() const
{
    switch (dataType) {
    case 27:
    case 54:
        return selectionItem.text;
    case 56:
        return stringList.join(QLatin1Char(','));
    default: {
        // Raw data need not end with a NUL.
        const auto* const end = std::find(rawData.begin(), rawData.end(), '\0');
        return QString::fromUtf8(rawData.constData(), QByteArray::size_type(end - rawData.begin()));
    }
    }
}

bool LocationInputResult::operator==(const LocationInputResult& other) const
{
    return std::tie(aux1, aux2, aux3, aux4, descriptors)
           == std::tie(other.aux1, other.aux2, other.aux3, other.aux4, other.descriptors);
}

bool LocationInputSummaryItem::operator==(const LocationInputSummaryItem& other) const
{
    return std::tie(aux1, aux2, values, descriptors)
           == std::tie(other.aux1, other.aux2, other.values, other.descriptors);
}

bool LocationInputSummaryItem::operator!=(const LocationInputSummaryItem& other) const
{
    return !(*this == other);
}

bool NavigationContext::operator==(const NavigationContext& other) const
{
    return std::tie(mode, locations, aux) == std::tie(other.mode, other.locations, other.aux);
}

bool NavigationContext::operator!=(const NavigationContext& other) const
{
    return !(*this == other);
}

QString convert(DatabaseVersionResult::UpdateAction action)
{
    return textOf(action, updateActions);
}

QString convert(DatabaseVersionResult::NaviDataImExportDevice device)
{
    return textOf(device, devices);
}

QString convert(DatabaseVersionResult::TypeOfUpdateData type)
{
    return textOf(type, updateDataTypes);
}

void extractOneShotFilterIds(const QHash<unsigned short, QByteArray>& attributes,
    QByteArray& firstFilterId, QByteArray& secondFilterId)
{
    // Both lists contain key 329.
    extractFirst(attributes, {9, 329, 257}, firstFilterId);
    extractFirst(attributes, {329, 2, 258}, secondFilterId);
}

QDebug& operator<<(QDebug& stream, const NavigationContext::Mode& mode)
{
    stream.nospace() << nameOf(mode, modes, "Unknown Mode");
    return stream.space();
}

QDebug& operator<<(QDebug& stream, const DatabaseVersionResult& result)
{
    stream.nospace() << "DatabaseVersionResult {"
                     << " tag: " << result.tag
                     << ", naviDatabasePackageId: " << result.naviDatabasePackageId
                     << ", typeOfUpdateData: " << convert(result.typeOfUpdateData)
                     << ", sizeOfPackage: " << result.sizeOfPackage
                     << ", naviDataImExportDevice: " << convert(result.naviDataImExportDevice)
                     << ", installedFlag: " << int(result.installedFlag)
                     << ", updateAction: " << convert(result.updateAction)
                     << ", detailedInformationAvailability: "
                     << int(result.detailedInformationAvailability)
                     << ", packageVersionCoverage: " << result.packageVersionCoverage
                     << ", packageVersionVendor: " << result.packageVersionVendor
                     << ", packageVersionNr: " << result.packageVersionNr
                     << ", packageVersionDescription: " << result.packageVersionDescription << " }";
    return stream.space();
}

QDebug& operator<<(QDebug& stream, const NavigationRequest& request)
{
    // The mode's printer turns spacing mode on. Services rely on the blanks after the later items.
    stream.nospace() << "NavigationRequest {"
                     << " mode: " << request.mode << ", intentGroup: " << request.intentGroup
                     << ", isVoiceInputActive: " << request.isVoiceInputActive
                     << ", retryCount: " << request.retryCount
                     << ", isRunning: " << request.isRunning << ", language: " << request.language
                     << " }";
    return stream.space();
}
