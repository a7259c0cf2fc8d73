#include <core/types/navigation.h>

#include <support/fields.h>

using Descriptor = LocationDescriptor;
using Database = DatabaseVersionResult;

const struct {
    const char *name, *keys;
    QByteArray extracted;
} filters[] = {{"no attribute", "", "- -"}, {"no filter", "1 3 10", "- -"},
    {"the first of each", "9 329 257 2 258", "9 329"}, {"329 serves both", "329 258", "329 329"},
    {"without 329", "257 2 258", "257 2"}, {"the last alone", "258", "- 258"}};

class NavigationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void equality() {
        using Selection = Descriptor::SelectionItemData;
        using Category = Descriptor::PoiCategoryItemData;
        using Poi = Descriptor::PoiLocationData;
        using Result = LocationInputResult;
        using Item = LocationInputSummaryItem;
        using Context = NavigationContext;
        const QStringList remarks{unusualFields<Selection, &Selection::id, &Selection::text>(),
            unusualFields<Category, &Category::aux1, &Category::aux2, &Category::aux3, &Category::name,
                &Category::aux4>(),
            unusualFields<Poi, &Poi::id, &Poi::descriptors>(),
            unusualFields<Descriptor, &Descriptor::aux1, &Descriptor::aux2, &Descriptor::dataType, &Descriptor::rawData,
                &Descriptor::stringList>(),
            unusualFields<Result, &Result::aux1, &Result::aux2, &Result::aux3, &Result::aux4, &Result::descriptors>(),
            unusualFields<Item, &Item::aux1, &Item::aux2, &Item::values, &Item::descriptors>(),
            unusualFields<Context, &Context::mode, &Context::locations, &Context::aux>()};
        // The default dataType, 0, does not select the list.
        QCOMPARE(remarks.join(QString()), u("stringList is ignored, 3 more are not named"));
        QCOMPARE(NavigationRequest().reserved, quint32(0)); // the only field that is not printed
    }

    void dataTypeSelectsThePayload() {
        for (int dataType = 0; dataType < 256; ++dataType) {
            Descriptor one;
            one.dataType = quint8(dataType);
            one.rawData = QByteArray("grü\0xyz", 8);
            one.selectionItem.text = u("item");
            one.stringList = QStringList{u("a"), u("b")};
            QVector<Descriptor> others(5, one);
            others[0].rawData = "x";
            others[1].selectionItem.id = 1;
            others[2].poiLocation.descriptors.append(one);
            others[3].poiCategoryItem.name = u("x");
            others[4].stringList += u("x");
            const int payload = QMap<int, int>{{27, 1}, {33, 2}, {37, 3}, {54, 1}, {56, 4}}.value(dataType);
            for (Descriptor& other : others) {
                QCOMPARE(one == other, &other != &others[payload]);
                QCOMPARE(one != other, &other == &others[payload]);
                QCOMPARE(one.isDataEqual(other), one == other);
            }
            Descriptor ofOtherType = one;
            ++ofOtherType.dataType;
            QVERIFY(one != ofOtherType && one.isDataEqual(ofOtherType));
            QCOMPARE(one.dataToString(), u(payload == 1 ? "item" : payload == 4 ? "a,b" : "grü"));
        }
        Descriptor descriptor;
        QCOMPARE(descriptor.dataToString(), QString());
        const char letters[] = {'a', 'b', 'c'};
        descriptor.rawData = QByteArray::fromRawData(letters, 2); // not terminated by a NUL
        QCOMPARE(descriptor.dataToString(), u("ab"));
    }

    void variantsHoldLists() {
        const QVariant variant = QVariant::fromValue(QList<Descriptor>{Descriptor()});
        QCOMPARE(variant.value<QSequentialIterable>().size(), 1);
    }

    void oneShotFilterIds_data() { addRows(filters); }
    void oneShotFilterIds() {
        const auto& row = currentRow(filters);
        QHash<unsigned short, QByteArray> attributes;
        for (const QByteArray& key : QByteArray(row.keys).split(' ')) { attributes.insert(key.toUShort(), key); }
        QByteArray first = "-";
        QByteArray second = "-";
        extractOneShotFilterIds(attributes, first, second);
        QCOMPARE(first + ' ' + second, row.extracted);
    }

    void names() {
        QString names;
        for (int value = 0; value < 7; ++value) {
            names += convert(Database::UpdateAction(value)) + u(" ") + convert(Database::NaviDataImExportDevice(value))
                     + u(" ") + convert(Database::TypeOfUpdateData(value)) + u("; ");
        }
        QCOMPARE(
            names, u("NoAction Reserved BasicDatabase; Install Hdd AdditionalContent; Remove Usb Unknown; "
                     "Unknown Dvd Unknown; Unknown Online Unknown; Unknown Dxs Unknown; Unknown Unknown Unknown; "));
    }

    void printers() {
        static_assert(
            fieldCount<NavigationRequest>() == 7 && fieldCount<Database>() == 12, "all fields are printed below");
        QCOMPARE(printed(NavigationContext::Spelling), u("Spelling | 1 "));
        QCOMPARE(printed(NavigationContext::OneShot), u("OneShot | 1 "));
        QCOMPARE(printed(NavigationContext::Mode(-1)), u("Unknown Mode | 1 "));
        QCOMPARE(printed(NavigationRequest()),
            quoted("NavigationRequest { mode: FullWord , intentGroup:  0 , isVoiceInputActive:  false , retryCount:  0 "
                   ", isRunning:  false , language:  Language { '00_00' }  }  | 1 "));
        QCOMPARE(printed(NavigationRequest{true, true, -1, 2, NavigationContext::Mode(7), 3, Thai}),
            quoted("NavigationRequest { mode: Unknown Mode , intentGroup:  2 , isVoiceInputActive:  true , "
                   "retryCount:  -1 , isRunning:  true , language:  Language { 'th_TH' }  }  | 1 "));
        QCOMPARE(printed(Database()),
            quoted("DatabaseVersionResult { tag: 0, naviDatabasePackageId: 0, typeOfUpdateData: 'BasicDatabase', "
                   "sizeOfPackage: 0, naviDataImExportDevice: 'Reserved', installedFlag: 0, updateAction: 'NoAction', "
                   "detailedInformationAvailability: 0, packageVersionCoverage: '', packageVersionVendor: '', "
                   "packageVersionNr: '', packageVersionDescription: '' } | 1 "));
        const Database full{1, 2, Database::AdditionalContent, 4'000'000'000, Database::Dxs, 65, Database::Remove, 255,
            u("Größe"), u("v \"x\""), u("n"), u("d")};
        QCOMPARE(printed(full),
            quoted("DatabaseVersionResult { tag: 1, naviDatabasePackageId: 2, typeOfUpdateData: 'AdditionalContent', "
                   "sizeOfPackage: 4000000000, naviDataImExportDevice: 'Dxs', installedFlag: 65, updateAction: "
                   "'Remove', detailedInformationAvailability: 255, packageVersionCoverage: 'Größe', "
                   "packageVersionVendor: 'v \\'x\\'', packageVersionNr: 'n', packageVersionDescription: 'd' } | 1 "));
    }
};

QTEST_APPLESS_MAIN(NavigationTest)
#include "navigationtest.moc"
