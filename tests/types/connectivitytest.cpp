#include <core/types/connectivity.h>

#include <support/fields.h>

const struct {
    const char* name;
    int strength, errorRate;
    bool isInvalid, isTooLowOrUnknown;
} qualities[] = {{"not reported", -1, -1, false, true}, {"invalid", 0, 0, true, true}, {"low", 1, 0, false, true},
    {"usable", 2, 0, false, false}, {"no error rate", 2, -1, false, false}, {"errors", 2, 1, false, true},
    {"highest level", 98, 0, false, false}, {"not known", 99, 0, false, true}, {"beyond", 100, 0, false, false}};

class ConnectivityTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void signalQuality_data() { addRows(qualities); }
    void signalQuality() {
        const auto& row = currentRow(qualities);
        const SignalQuality quality(SignalQuality::SignalStrength(row.strength), row.errorRate);
        QCOMPARE(quality.isInvalid(), row.isInvalid);
        QCOMPARE(quality.isTooLowOrUnknown(), row.isTooLowOrUnknown);
        QCOMPARE(int(quality.strength()), row.strength);
        QCOMPARE(quality.errorRate(), row.errorRate);
        QCOMPARE(quality == SignalQuality(), row.strength == -1 && row.errorRate == -1);
        QCOMPARE(quality != SignalQuality(SignalQuality::Usable, -1), row.strength != 2 || row.errorRate != -1);
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
