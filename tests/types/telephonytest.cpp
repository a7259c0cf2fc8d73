#include <core/types/telephony.h>

#include <support/fields.h>

#include <type_traits>

class TelephonyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void equality() {
        QCOMPARE((unusualFields<Call, &Call::handle, &Call::primaryText, &Call::secondaryText, &Call::aux1, &Call::time,
                     &Call::state, &Call::aux2, &Call::aux3, &Call::aux4, &Call::aux5, &Call::note>()),
            u("handle is ignored, state has a default, note is ignored"));
        QCOMPARE(Call().state, 4);
        QCOMPARE((unusualFields<DeviceMap, &DeviceMap::deviceId, &DeviceMap::aux1, &DeviceMap::aux2>()), QString());
        DeviceMap device;
        device.deviceId = "";
        QVERIFY(device == DeviceMap()); // an empty id equals a null one
        device.deviceId = QByteArray("a\0b", 3);
        DeviceMap other = device;
        other.deviceId[2] = 'c';
        QVERIFY(!(device == other));
    }

    void callsAreOrderedByTime() {
        Call early;
        Call late;
        QVERIFY(!(early < late) && !(late < early));
        early.time = QDateTime::fromSecsSinceEpoch(1);
        late.time = QDateTime::fromSecsSinceEpoch(2);
        QVERIFY(early < late && !(late < early));
    }

    void applicationCode() {
        static_assert(std::is_same<decltype(AppCode::HYBRID_SPEECH_APPCODE), const char>::value, "one character");
        QCOMPARE(AppCode::HYBRID_SPEECH_APPCODE, '1');
    }
};

QTEST_APPLESS_MAIN(TelephonyTest)
#include "telephonytest.moc"
