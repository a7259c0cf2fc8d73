#include <core/types/connectivity.h>
#include <core/types/telephony.h>

#include <support/fields.h>
#include <support/helpers.h>

#include <QDebug>
#include <QTest>

#include <type_traits>

// The small records, of connectivity and of telephony.
class RecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void calls()
    {
        QCOMPARE(countingFields<Call>(&Call::handle, &Call::primaryText, &Call::secondaryText, &Call::aux1, &Call::time,
                     &Call::state, &Call::aux2, &Call::aux3, &Call::aux4, &Call::aux5, &Call::note),
            u("01111111110"));
        QCOMPARE(Call().state, 4);
        Call early;
        Call late;
        QVERIFY(!(early < late) && !(late < early));
        early.time = QDateTime::fromSecsSinceEpoch(1);
        late.time = QDateTime::fromSecsSinceEpoch(2);
        QVERIFY(early < late && !(late < early));
    }

    void devices()
    {
        QCOMPARE(countingFields<DeviceMap>(&DeviceMap::deviceId, &DeviceMap::aux1, &DeviceMap::aux2), u("111"));
        DeviceMap device;
        device.deviceId = "";
        QVERIFY(device == DeviceMap()); // empty and null
        device.deviceId = QByteArray("a\0b", 3);
        DeviceMap other = device;
        other.deviceId[2] = 'c';
        QVERIFY(!(device == other));
    }

    void applicationCode()
    {
        static_assert(std::is_same<decltype(AppCode::HYBRID_SPEECH_APPCODE), const char>::value, "one character");
        QCOMPARE(AppCode::HYBRID_SPEECH_APPCODE, '1');
    }

    void signalQuality()
    {
        const struct
        {
            int strength, errorRate;
            bool isInvalid, isTooLowOrUnknown;
        } rows[] = {{-1, -1, false, true}, {0, 0, true, true}, {1, 0, false, true}, {2, 0, false, false},
            {2, -1, false, false}, {2, 1, false, true}, {98, 0, false, false}, {99, 0, false, true},
            {100, 0, false, false}};
        for (const auto& row : rows) {
            const SignalQuality quality(SignalQuality::SignalStrength(row.strength), row.errorRate);
            QCOMPARE(quality.isInvalid(), row.isInvalid);
            QCOMPARE(quality.isTooLowOrUnknown(), row.isTooLowOrUnknown);
            QCOMPARE(int(quality.strength()), row.strength);
            QCOMPARE(quality.errorRate(), row.errorRate);
        }
        QVERIFY(SignalQuality() == SignalQuality(SignalQuality::NotReported, -1));
        QVERIFY(SignalQuality() != SignalQuality(SignalQuality::NotReported, 0));
        QVERIFY(SignalQuality() != SignalQuality(SignalQuality::Invalid, -1));
    }

    void networkPermissionPrinter()
    {
        QCOMPARE(printed(NetworkPermission()),
            u("NetworkPermission { url: \"\" poiUrl: \"\" httsUrl: \"\" proxyUsername: \"\" "
              "proxyPassword: \"\" proxyAddress: \"\" proxyPort: 0 outgoingPortRange: 0-0 endpointAddress: \"\" "
              "endpointPort: 0 poiEndpointPort: 0 httsEndpointPort: 0 poiEndpointAddress: \"\" httsEndpointAddress: "
              "\"\" "
              "useSsl: false poiUseSsl: false httsUseSsl: false active: false poiActive: false messageActive: false "
              "pttCountActive: false thirdPartyActive: false } | 1 "));
        const NetworkPermission full{u("u"), u("p"), u("h"), u("user"), u("ge\"heim ä"), u("proxy"), 1, 65535, 3,
            u("e"), 4, 5, 6, u("pe"), u("he"), true, false, true, false, true, false, true, false};
        QCOMPARE(printed(full),
            u("NetworkPermission { url: \"u\" poiUrl: \"p\" httsUrl: \"h\" proxyUsername: \"user\" "
              "proxyPassword: \"ge\\\"heim ä\" proxyAddress: \"proxy\" proxyPort: 1 outgoingPortRange: 65535-3 "
              "endpointAddress: \"e\" endpointPort: 4 poiEndpointPort: 5 httsEndpointPort: 6 poiEndpointAddress: "
              "\"pe\" "
              "httsEndpointAddress: \"he\" useSsl: true poiUseSsl: false httsUseSsl: true active: false poiActive: "
              "true "
              "messageActive: false pttCountActive: true thirdPartyActive: false } | 1 "));
    }
};

QTEST_APPLESS_MAIN(RecordsTest)
#include "recordstest.moc"
