#include <core/orvcore_version.h>

#include <support/helpers.h>

class OrvCoreVersionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void version() {
        const int parts[] = {ORVCORE_VERSION_MAJOR, ORVCORE_VERSION_MINOR, ORVCORE_VERSION_PATCH};
        QCOMPARE(u(orvCoreVersion()), u("%1.%2.%3").arg(parts[0]).arg(parts[1]).arg(parts[2]));
        QCOMPARE(ORVCORE_VERSION_CHECK(1, 2 + 3, 4), 0x010504);
        QVERIFY(ORVCORE_VERSION_CHECK(1, 9, 255) < ORVCORE_VERSION_CHECK(1, 10, 0));
    }
};

QTEST_APPLESS_MAIN(OrvCoreVersionTest)
#include "orvcore_versiontest.moc"
