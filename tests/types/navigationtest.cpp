#include <core/types/navigation.h>

#include <support/fields.h>

#include <QDebug>
#include <QTest>

namespace {

using Descriptor = LocationDescriptor;
using Database = DatabaseVersionResult;

/** Which payloads count for a type: raw data, selection item, location, category, list. */
QString countingPayloads(quint8 dataType)
{
    QString result;
    for (int payload = 0; payload < 5; ++payload) {
        Descriptor one;
        one.dataType = dataType;
        Descriptor other = one;
        switch (payload) {
        case 0: other.rawData = "x"; break;
        case 1: other.selectionItem.id = 1; break;
        case 2: other.poiLocation.descriptors.append(one); break;
        case 3: other.poiCategoryItem.name = u("x"); break;
        case 4: other.stringList += u("x"); break;
        }
        result += one == other ? u("0") : u("1");
        Descriptor ofOtherType = one;
        ++ofOtherType.dataType;
        const bool isConsistent = one.isDataEqual(other) == (one == other) && (one != other) == !(one == other);
        result += isConsistent && one != ofOtherType && one.isDataEqual(ofOtherType) ? QString() : u("?");
    }
    return result;
}

} // namespace

class NavigationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equality()
    {
        using Selection = Descriptor::SelectionItemData;
        using Category = Descriptor::PoiCategoryItemData;
        using Poi = Descriptor::PoiLocationData;
        using Result = LocationInputResult;
        using Item = LocationInputSummaryItem;
        using Context = NavigationContext;
        QCOMPARE(countingFields<Selection>(&Selection::id, &Selection::text), u("11"));
        QCOMPARE(countingFields<Category>(
                     &Category::aux1, &Category::aux2, &Category::aux3, &Category::name, &Category::aux4),
            u("11111"));
        QCOMPARE(countingFields<Poi>(&Poi::id, &Poi::descriptors), u("11"));
        QCOMPARE(countingFields<Descriptor>(&Descriptor::aux1, &Descriptor::aux2, &Descriptor::dataType,
                     &Descriptor::rawData, &Descriptor::stringList),
            u("11110"));
        QCOMPARE(
            countingFields<Result>(&Result::aux1, &Result::aux2, &Result::aux3, &Result::aux4, &Result::descriptors),
            u("11111"));
        QCOMPARE(countingFields<Item>(&Item::aux1, &Item::aux2, &Item::values, &Item::descriptors), u("1111"));
        QCOMPARE(countingFields<Context>(&Context::mode, &Context::locations, &Context::aux), u("111"));
        Context context;
        context.locations.append(Descriptor());
        QVERIFY(context != Context() && !(context != context));
        QVERIFY(Item() == Item() && !(Item() != Item()));
        QVERIFY(Poi() == Poi() && !(Poi() != Poi()) && !(Selection() != Selection()) && !(Category() != Category()));
    }

    void dataTypeSelectsThePayload()
    {
        for (int dataType = 0; dataType < 256; ++dataType) {
            const QString expected = dataType == 27 || dataType == 54 ? u("01000")
                                     : dataType == 33                 ? u("00100")
                                     : dataType == 37                 ? u("00010")
                                     : dataType == 56                 ? u("00001")
                                                                      : u("10000");
            QCOMPARE(countingPayloads(quint8(dataType)), expected);

            Descriptor descriptor;
            descriptor.dataType = quint8(dataType);
            descriptor.rawData = QByteArray("grü\0xyz", 8);
            descriptor.selectionItem.text = u("item");
            descriptor.stringList = QStringList{u("a"), u("b")};
            QCOMPARE(descriptor.dataToString(), dataType == 27 || dataType == 54 ? u("item")
                                                : dataType == 56                 ? u("a,b")
                                                                                 : u("grü"));
        }
        Descriptor descriptor;
        QCOMPARE(descriptor.dataToString(), QString());
        const char letters[] = {'a', 'b', 'c'};
        descriptor.rawData = QByteArray::fromRawData(letters, 2); // without a NUL behind
        QCOMPARE(descriptor.dataToString(), u("ab"));
    }

    void listsTravelInVariants()
    {
        const QVariant variant = QVariant::fromValue(QList<Descriptor>{Descriptor()});
        QCOMPARE(variant.value<QSequentialIterable>().size(), 1);
    }

    void oneShotFilterIds()
    {
        const auto extracted = [](std::initializer_list<unsigned short> keys) {
            QHash<unsigned short, QByteArray> attributes;
            for (const unsigned short key : keys) { attributes.insert(key, QByteArray::number(key)); }
            QByteArray first = "-";
            QByteArray second = "-";
            extractOneShotFilterIds(attributes, first, second);
            return first + ' ' + second;
        };
        QCOMPARE(extracted({}), QByteArray("- -"));
        QCOMPARE(extracted({1, 3, 10}), QByteArray("- -"));
        QCOMPARE(extracted({9, 329, 257, 2, 258}), QByteArray("9 329"));
        QCOMPARE(extracted({329, 258}), QByteArray("329 329"));
        QCOMPARE(extracted({257, 2, 258}), QByteArray("257 2"));
        QCOMPARE(extracted({258}), QByteArray("- 258"));
    }

    void names()
    {
        QStringList all;
        for (int value = 0; value < 7; ++value) {
            all += convert(Database::UpdateAction(value)) + u("/") + convert(Database::NaviDataImExportDevice(value))
                   + u("/") + convert(Database::TypeOfUpdateData(value));
        }
        QCOMPARE(all.join(u(" ")),
            u("NoAction/Reserved/BasicDatabase Install/Hdd/AdditionalContent Remove/Usb/Unknown "
              "Unknown/Dvd/Unknown Unknown/Online/Unknown Unknown/Dxs/Unknown Unknown/Unknown/Unknown"));
    }

    void printers()
    {
        QCOMPARE(printed(NavigationContext::OneShot), expectedPrint("mode"));
        QCOMPARE(printed(NavigationContext::Mode(-1)), expectedPrint("other mode"));
        QCOMPARE(printed(NavigationRequest()), expectedPrint("default request"));
        NavigationRequest request;
        request.isRunning = request.isVoiceInputActive = true;
        request.retryCount = -1;
        request.intentGroup = 2;
        request.mode = NavigationContext::Mode(7);
        request.reserved = 3;
        request.language = Thai;
        QCOMPARE(printed(request), expectedPrint("full request"));
        QCOMPARE(printed(Database()), expectedPrint("default database"));
        const Database full{1, 2, Database::AdditionalContent, 4'000'000'000, Database::Dxs, 65, Database::Remove, 255,
            u("Größe"), u("v \"x\""), u("n"), u("d")};
        QCOMPARE(printed(full), expectedPrint("full database"));
    }
};

QTEST_APPLESS_MAIN(NavigationTest)
#include "navigationtest.moc"
