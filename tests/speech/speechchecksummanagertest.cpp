#include <core/speech/speechchecksummanager.h>

#include <support/childprocess.h>
#include <support/helpers.h>
#include <support/logcapture.h>

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Manager = SpeechChecksumManager;
using Key = SpeechChecksumManager::ChecksumKey;

void useStore(const QString& fileName) { qputenv("ORV_SPEECH_CHECKSUM_FILE", fileName.toUtf8()); }

/** The entries of a store, each checksum up to its first NUL. */
QString listed(const Manager& manager) {
    QStringList texts;
    for (const Manager::Entry& entry : manager.entries()) {
        texts += entry.key.toString() + u("=") + u(entry.checksum);
    }
    return texts.join(u(" "));
}

/** Rewrites a store of @p count entries, each time with other checksums of one value, until it is killed. */
[[noreturn]] void rewriteForEver(int count) {
    Manager manager;
    for (int round = 0;; ++round) {
        for (int i = 0; i < count; ++i) {
            manager.insert(QString::number(i), German, QByteArray::number(round), Manager::DefaultChecksum);
        }
        manager.writePersistentData();
    }
}

/** Calls @p function with little of a resource left, where three units are hardly one. */
template <typename Resource, typename Function> void withLimit(Resource resource, Function function) {
    rlimit usual;
    getrlimit(resource, &usual);
    const rlimit tight{3, usual.rlim_max};
    setrlimit(resource, &tight);
    function();
    setrlimit(resource, &usual);
}

bool isRenamingRefused = false;

} // namespace

// This stands before the system's own also for Qt: a file that is itself a mount point cannot be replaced.
int rename(const char* from, const char* to) noexcept {
    if (isRenamingRefused) {
        errno = EBUSY;
        return -1;
    }
    return reinterpret_cast<decltype(&rename)>(dlsym(RTLD_NEXT, "rename"))(from, to);
}

class SpeechChecksumManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() {
        folder.reset(new QTemporaryDir);
        store = folder->filePath(u("störe.json"));
        useStore(store);
    }

    void keys() {
        QCOMPARE(Key().toString(), u(";00_00;1"));
        QCOMPARE(Key(u("/ä b%1%2"), German, Manager::AlternateChecksum).toString(), u("/ä b%1%2;de_DE;0"));
        QVERIFY(Key() == Key(u("no key")) && Key() != Key(u(";de_DE;1")) && Key() != Key(u(";00_00;0")));
        QVERIFY(Key() != Key(u("x;00_00;1")));
        QCOMPARE(Key(u("x"), Language(7), Manager::ChecksumType(10)).toString(), u("x;;10"));
        QCOMPARE(Key(u("a;b;c")).language, InvalidLanguage);
        const QMap<const char*, const char*> reread = {{"/a;de_DE;0", "/a;de_DE;0"}, {"x;yue_CN;-3", "x;yue_CN;-3"},
            {"a;b;c", "a;;0"}, {"", ";00_00;1"}, {"a;de_DE", ";00_00;1"}, {"a;b;de_DE;1", ";00_00;1"}};
        for (auto key = reread.begin(); key != reread.end(); ++key) { QCOMPARE(Key(u(key.key())).toString(), u(*key)); }
    }

    void tableInMemory() {
        LogCapture log;
        Manager manager;
        QVERIFY(manager.checksum(u("f"), German, Manager::DefaultChecksum).isNull());
        for (const auto type : {Manager::DefaultChecksum, Manager::AlternateChecksum}) {
            manager.insert(u("f"), German, "1", type);
            manager.insert(u("f"), French, "2", type);
        }
        manager.insert(u("f"), German, QByteArray(), Manager::DefaultChecksum);
        QCOMPARE(manager.checksum(u("f"), German, Manager::DefaultChecksum), QByteArray("1"));
        manager.insert(u("f"), German, "", Manager::DefaultChecksum);
        QVERIFY(!manager.checksum(u("f"), German, Manager::DefaultChecksum).isNull());
        manager.insert(u("f"), Thai, Manager::DefaultChecksum);
        QCOMPARE(manager.checksum(u("f"), Thai, Manager::DefaultChecksum).size(), 32);
        manager.remove(u("f"), German);
        for (const auto type : {Manager::DefaultChecksum, Manager::AlternateChecksum}) {
            QVERIFY(manager.checksum(u("f"), German, type).isNull());
            QCOMPARE(manager.checksum(u("f"), French, type), QByteArray("2"));
        }
        QVERIFY(!QFile::exists(store));
        qunsetenv("ORV_SPEECH_CHECKSUM_FILE");
        const Manager usual;
        QVERIFY(log.takeTexts().last().contains(u("\"/mnt/share/speech/checksum.json\"")));
    }

    // Members of other types give what the variant conversions make of them.
    void loadsMembersOfAnyType_data() {
        QTest::addColumn<QByteArray>("json");
        for (const char* json : {"1", "-1", "3.7", "2.5", "\"12\"", "\" 12\"", "\"x\"", "\"\"", "true", "null", "[1]",
                 "{}", "1e300", "3000000000", "4294967297"}) {
            QTest::newRow(json) << QByteArray(json);
        }
    }
    void loadsMembersOfAnyType() {
        QFETCH(QByteArray, json);
        const QJsonValue value = QJsonDocument::fromJson('[' + json + ']').array().at(0);
        const QVariant variant = value.toVariant();
        const QJsonObject object{
            {u("checksum"), value}, {u("filePath"), value}, {u("language"), value}, {u("type"), value}};
        QVERIFY(writeFile(store, QJsonDocument(QJsonArray{object}).toJson()));
        LogCapture log;
        const QByteArray checksum =
            Manager().checksum(variant.toString(), Language(variant.toInt()), Manager::ChecksumType(variant.toInt()));
        QCOMPARE(checksum, variant.toByteArray());
        QCOMPARE(checksum.isNull(), variant.toByteArray().isNull());
    }

    void loadsWhateverTheFileHolds() {
        LogCapture log;
        QVERIFY(writeFile(store, R"([5, {"checksum": "c", "language": 1}, {"checksum": "d", "language": 1}])"));
        const Manager manager;
        QCOMPARE(manager.checksum(QString(), German, Manager::AlternateChecksum), QByteArray("d"));
        Manager copy = manager;
        copy.writePersistentData();
        QCOMPARE(QJsonDocument::fromJson(readFile(store)).array().size(), 2); // one of them of the number
        QVERIFY(writeFile(store, "{\"filePath\": \"f\"}"));
        Manager().writePersistentData();
        QCOMPARE(readFile(store), QByteArray("[\n]\n"));
    }

    void writesAndReloads() {
        LogCapture log;
        Manager manager;
        manager.insert(u("/ä"), MandarinChina, QByteArray("0\0f", 3), Manager::AlternateChecksum);
        manager.writePersistentData();
        QCOMPARE(readFile(store),
            QByteArray("[\n    {\n        \"checksum\": \"0\\u0000f\",\n        \"filePath\": \"/ä\",\n"
                       "        \"language\": 11,\n        \"type\": 0\n    }\n]\n"));
        manager.insert(u("a;b"), German, "", Manager::DefaultChecksum);
        manager.writePersistentData();
        QCOMPARE(listed(manager), u(";00_00;1= /ä;cmn_CN;0=0"));
        const Manager reloaded;
        QCOMPARE(listed(reloaded), listed(manager));
        QCOMPARE(reloaded.checksum(u("/ä"), MandarinChina, Manager::AlternateChecksum), QByteArray("0\0f", 3));
        // A path with the separator of keys comes back as the default key.
        QVERIFY(reloaded.checksum(u("a;b"), German, Manager::DefaultChecksum).isNull());
        QCOMPARE(reloaded.checksum(QString(), NoLanguage, Manager::DefaultChecksum), QByteArray(""));
        QVERIFY(!reloaded.checksum(QString(), NoLanguage, Manager::DefaultChecksum).isNull());
    }

    void writesWhatQtWouldWrite() {
        LogCapture log;
        const QStringList fragments{u("a"), u(" ~"), u("\""), u("\\"), u("/"), u("\n"), u("\x1f"), u("\x7f"), u("ä"),
            u("中"), u("😀"), QChar(0xd800), QChar(0)};
        QRandomGenerator random(1);
        for (int round = testRounds(1000); round > 0; --round) {
            Manager manager;
            QByteArrayList elements;
            for (int i = 0; i < 100; ++i) {
                const QString path = QString::number(i) + randomText(random, fragments, 6);
                const QByteArray checksum = "c" + randomText(random, fragments, 6).toUtf8(); // never null
                const auto language = Language(random.bounded(-2, 40));
                const auto type = Manager::ChecksumType(random.bounded(3));
                manager.insert(path, language, checksum, type);
                const Key key(Key(path, language, type).toString());
                const QJsonObject object{{u("checksum"), QString::fromUtf8(checksum.constData(), checksum.size())},
                    {u("filePath"), key.filePath}, {u("language"), key.language}, {u("type"), key.type}};
                elements += QJsonDocument(QJsonArray{object}).toJson().mid(2).chopped(3);
            }
            manager.writePersistentData();
            const QByteArray content = readFile(store);
            for (const QByteArray& element : elements) { QVERIFY2(content.contains(element), element); }
            QCOMPARE(content.size(), ("[\n" + elements.join(",\n") + "\n]\n").size()); // in some order
            QFile::remove(store);
        }
    }

    void replacesTheFileInOneStep() {
        LogCapture log;
        const QString target = folder->filePath(u("target.json"));
        QVERIFY(writeFile(target, "old"));
        QVERIFY(QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
        const auto permissions = QFile::permissions(target);
        QVERIFY(QFile::link(target, store));
        Manager manager;
        manager.writePersistentData();
        QVERIFY(QFileInfo(store).isSymLink() && Manager::isWritten());
        QCOMPARE(readFile(target), QByteArray("[\n]\n"));
        QCOMPARE(QFile::permissions(target), permissions);
        log.takeTexts();

        // A file-size limit stands in for a full disk; the other leaves no descriptor for a new file.
        manager.insert(u("f"), German, "1", Manager::DefaultChecksum);
        std::signal(SIGXFSZ, SIG_IGN);
        const QString warning = u("warning: Unable to open file for writing \"%1\"");
        for (const auto resource : {RLIMIT_FSIZE, RLIMIT_NOFILE}) {
            withLimit(resource, [&manager] { manager.writePersistentData(); });
            QVERIFY(!Manager::isWritten());
            QCOMPARE(log.takeTexts(), QStringList(warning.arg(store)));
            QCOMPARE(readFile(target), QByteArray("[\n]\n"));
        }
        QCOMPARE(QDir(folder->path()).entryList(QDir::Files).size(), 2);

        for (const QString& fileName : {QString(), folder->path(), folder->filePath(u("none/store.json"))}) {
            useStore(fileName);
            Manager other;
            log.takeTexts();
            other.writePersistentData();
            QCOMPARE(log.takeTexts(), QStringList(warning.arg(fileName)));
        }
        // A loop of links stays one.
        QVERIFY(QFile::link(folder->filePath(u("b")), folder->filePath(u("a"))));
        QVERIFY(QFile::link(folder->filePath(u("a")), folder->filePath(u("b"))));
        useStore(folder->filePath(u("a")));
        Manager().writePersistentData();
        QVERIFY(QFileInfo(folder->filePath(u("a"))).isSymLink());
        QVERIFY(log.takeTexts().last().startsWith(u("warning: Unable")));

        // A pipe stays one, and passes the store on.
        const QByteArray pipe = QFile::encodeName(folder->filePath(u("pipe")));
        useStore(u(pipe));
        Manager writer;
        QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
        const int reader = open(pipe.constData(), O_RDONLY | O_NONBLOCK);
        writer.writePersistentData();
        char content[10];
        QCOMPARE(read(reader, content, sizeof content), ssize_t(4));
        close(reader);
    }

    void writesInPlaceWhatCannotBeReplaced() {
        const QByteArray path = QFile::encodeName(store);
        LogCapture log;
        const auto write = [this, &log] {
            QVERIFY(writeFile(store, "[]"));
            Manager manager;
            manager.insert(u("f"), German, "1", Manager::DefaultChecksum);
            log.takeTexts();
            manager.writePersistentData();
            QCOMPARE(log.takeTexts(), QStringList());
            QVERIFY(readFile(store).contains("\"f\""));
        };
        isRenamingRefused = true;
        write();
        isRenamingRefused = false;

        // A user and a group keep their file, though root alone can tell.
        const uid_t user = getuid();
        constexpr uid_t other = 12345;
        if (user == 0) {
            QCOMPARE(chown(path.constData(), other, 0), 0);
            write();
            QCOMPARE(QFileInfo(store).ownerId(), other);
            QCOMPARE(chown(path.constData(), 0, other), 0);
            write();
            QCOMPARE(QFileInfo(store).groupId(), other);
            QCOMPARE(chown(path.constData(), other, 0), 0);
        }
        // A folder without write permission; root needs none.
        const QByteArray folderPath = QFile::encodeName(folder->path());
        QCOMPARE(chmod(folderPath.constData(), 0555), 0);
        QVERIFY(user != 0 || setresuid(other, other, user) == 0);
        write();
        for (const int size : {1, 100'000}) { // what is buffered fails later
            Manager manager;
            manager.insert(QString(size, QLatin1Char('f')), German, "1", Manager::DefaultChecksum);
            log.takeTexts();
            withLimit(RLIMIT_FSIZE, [&manager] { manager.writePersistentData(); });
            QCOMPARE(log.takeTexts().size(), 1);
        }
        QVERIFY(user != 0 || setresuid(user, user, user) == 0);
        QCOMPARE(chmod(folderPath.constData(), 0755), 0);
    }

    void survivesBeingKilled() {
        LogCapture log;
        QRandomGenerator random(1);
        for (int round = testRounds(2000); round > 0; --round) {
            ChildProcess writer;
            writer.start(QCoreApplication::applicationFilePath(), {u("rewrite"), u("2000")});
            QTRY_VERIFY(QFile::exists(store));
            QTest::qWait(random.bounded(30));
            writer.kill();
            QVERIFY(writer.waitForFinished());
            const QJsonArray entries = QJsonDocument::fromJson(readFile(store)).array();
            QCOMPARE(entries.size(), 2000);
            for (const QJsonValue& entry : entries) { QCOMPARE(entry[u("checksum")], entries[0][u("checksum")]); }
        }
    }

    void removeFile() {
        LogCapture log;
        QVERIFY(writeFile(store, "[{\"filePath\": \"f\", \"checksum\": \"1\"}]"));
        Manager manager;
        manager.removeFile();
        QVERIFY(!QFile::exists(store));
        manager.removeFile();
        QCOMPARE(manager.checksum(u("f"), NoLanguage, Manager::AlternateChecksum), QByteArray("1"));
        useStore(folder->path());
        const Manager other;
        log.takeTexts();
        manager.removeFile(); // acts on the file of the latest construction, here a folder
        const QString line = u("critical: void SpeechChecksumManager::removeFile() Could not remove old file: \"%1\"");
        QCOMPARE(log.takeTexts(), QStringList(line.arg(folder->path())));
    }

    void generateChecksum() {
        LogCapture log;
        const QByteArray nothing = "d41d8cd98f00b204e9800998ecf8427e";
        QCOMPARE(Manager::generateChecksum(store), nothing);
        QCOMPARE(Manager::generateChecksum(folder->path()), nothing);
        QCOMPARE(Manager::generateChecksum(QString()), nothing);
        for (const int size : {0, 1, 65535, 65536, 65537, 1'000'000}) {
            const QByteArray content(size, 'x');
            QVERIFY(writeFile(store, content));
            QCOMPARE(
                Manager::generateChecksum(store), QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex());
        }
        for (const QString& fileName : {store, folder->path(), QString(), u("/proc/self/mem")}) {
            bool isRead = fileName != store;
            Manager::generateChecksum(fileName, isRead);
            QCOMPARE(isRead, fileName == store);
        }
        QCOMPARE(Manager::generateChecksum(u("/proc/self/mem")), nothing); // cannot be read, but states no size
        QVERIFY(log.takeLines().isEmpty());

        const QString shorter = u("/sys/kernel/mm/transparent_hugepage/enabled"); // than the page that it states
        QFile file(shorter);
        if (!file.open(QIODevice::ReadOnly)) { QSKIP("this system has no sysfs"); }
        QCryptographicHash hash(QCryptographicHash::Md5);
        const bool isWhole = hash.addData(&file);
        QCOMPARE(Manager::generateChecksum(shorter), hash.result().toHex());
        const char* const line = "warning: static QByteArray SpeechChecksumManager::generateChecksum(const QString&) "
                                 "Could not calculate checksum for \"%1\"";
        QCOMPARE(log.takeTexts(), isWhole ? QStringList() : QStringList(u(line).arg(shorter)));
    }

private:
    QScopedPointer<QTemporaryDir> folder;
    QString store;
};

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "rewrite") == 0) { rewriteForEver(u(argv[2]).toInt()); }
    SpeechChecksumManagerTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "speechchecksummanagertest.moc"
