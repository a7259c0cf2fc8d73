#include <core/types/connectivity.h>

#include <support/fields.h>

class ConnectivityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void signalQuality_data() {
        QTest::addColumn<int>("strength");
        QTest::addColumn<int>("errorRate");
        QTest::addColumn<bool>("isInvalid");
        QTest::addColumn<bool>("isTooLowOrUnknown");

        QTest::newRow("not reported") << -1 << -1 << false << true;
        QTest::newRow("invalid") << 0 << 0 << true << true;
        QTest::newRow("low") << 1 << 0 << false << true;
        QTest::newRow("usable") << 2 << 0 << false << false;
        QTest::newRow("no error rate") << 2 << -1 << false << false;
        QTest::newRow("errors") << 2 << 1 << false << true;
        QTest::newRow("highest level") << 98 << 0 << false << false;
        QTest::newRow("not known") << 99 << 0 << false << true;
        QTest::newRow("beyond") << 100 << 0 << false << false;
    }
    void signalQuality() {
        QFETCH(int, strength);
        QFETCH(int, errorRate);
        const SignalQuality quality(SignalQuality::SignalStrength(strength), errorRate);
        QTEST(quality.isInvalid(), "isInvalid");
        QTEST(quality.isTooLowOrUnknown(), "isTooLowOrUnknown");
        QCOMPARE(int(quality.strength()), strength);
        QCOMPARE(quality.errorRate(), errorRate);
        QCOMPARE(quality == SignalQuality(), strength == -1 && errorRate == -1);
        QCOMPARE(quality != SignalQuality(SignalQuality::Usable, -1), strength != 2 || errorRate != -1);
    }

    void printer() {
        static_assert(fieldCount<NetworkPermission>() == 23, "all fields are printed below");
        QCOMPARE(printed(NetworkPermission()),
            quoted("NetworkPermission { url: '' poiUrl: '' httsUrl: '' proxyUsername: '' proxyPassword: '' "
                   "proxyAddress: '' proxyPort: 0 outgoingPortRange: 0-0 endpointAddress: '' endpointPort: 0 "
                   "poiEndpointPort: 0 httsEndpointPort: 0 poiEndpointAddress: '' httsEndpointAddress: '' useSsl: "
                   "false poiUseSsl: false httsUseSsl: false active: false poiActive: false messageActive: false "
                   "pttCountActive: false thirdPartyActive: false } | 1 "));
        const NetworkPermission full{u("u"), u("p"), u("h"), u("user"), u("ge\"heim ä"), u("proxy"), 1, 65535, 3,
            u("e"), 4, 5, 6, u("pe"), u("he"), true, false, true, false, true, false, true, false};
        QCOMPARE(printed(full),
            quoted("NetworkPermission { url: 'u' poiUrl: 'p' httsUrl: 'h' proxyUsername: 'user' proxyPassword: "
                   "'ge\\'heim ä' proxyAddress: 'proxy' proxyPort: 1 outgoingPortRange: 65535-3 endpointAddress: "
                   "'e' endpointPort: 4 poiEndpointPort: 5 httsEndpointPort: 6 poiEndpointAddress: 'pe' "
                   "httsEndpointAddress: 'he' useSsl: true poiUseSsl: false httsUseSsl: true active: false "
                   "poiActive: true messageActive: false pttCountActive: true thirdPartyActive: false } | 1 "));
    }
};

QTEST_APPLESS_MAIN(ConnectivityTest)
#include "connectivitytest.moc"
