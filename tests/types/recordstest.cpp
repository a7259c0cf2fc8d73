#include <core/orvcore_version.h>
#include <core/types/connectivity.h>
#include <core/types/telephony.h>

#include <support/fields.h>

#include <QDebug>
#include <QTest>

#include <type_traits>

// The small records, of connectivity and of telephony.
class RecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void version()
    {
        const int parts[] = {ORVCORE_VERSION_MAJOR, ORVCORE_VERSION_MINOR, ORVCORE_VERSION_PATCH};
        QCOMPARE(u(orvCoreVersion()), u("%1.%2.%3").arg(parts[0]).arg(parts[1]).arg(parts[2]));
        QCOMPARE(ORVCORE_VERSION_CHECK(1, 2 + 3, 4), 0x010504);
        QVERIFY(ORVCORE_VERSION_CHECK(1, 9, 255) < ORVCORE_VERSION_CHECK(1, 10, 0));
    }

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
        const struct {
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
        QCOMPARE(printed(NetworkPermission()), expectedPrint("default permission"));
        const NetworkPermission full{u("u"), u("p"), u("h"), u("user"), u("ge\"heim ä"), u("proxy"), 1, 65535, 3,
            u("e"), 4, 5, 6, u("pe"), u("he"), true, false, true, false, true, false, true, false};
        QCOMPARE(printed(full), expectedPrint("full permission"));
    }
};

QTEST_APPLESS_MAIN(RecordsTest)
#include "recordstest.moc"
