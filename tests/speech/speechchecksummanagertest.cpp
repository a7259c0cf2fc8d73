#include <core/speech/speechchecksummanager.h>

#include <support/helpers.h>
#include <support/logcapture.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Manager = SpeechChecksumManager;
using Key = SpeechChecksumManager::ChecksumKey;

/** JSON values, and what the store reads as text and as number. */
const struct {
    const char *name, *text; // null: the JSON
    int number;
} members[] = {{"1", nullptr, 1}, {"-1", nullptr, -1}, {"3.7", nullptr, 4}, {"2.5", nullptr, 3}, {"-2.5", nullptr, -2},
    {"-0.5", nullptr, 0}, {"-3000000000.5", nullptr, 1294967296}, {"-2.6", nullptr, -3},
    {"-4503599627370497", nullptr, -1}, {"\"12\"", "12", 12}, {"\" 12\"", " 12", 12}, {"\"1.5\"", "1.5", 0},
    {"\"x\"", "x", 0}, {"\"\"", "", 0}, {"true", nullptr, 1}, {"false", nullptr, 0}, {"null", "", 0}, {"[1]", "", 0},
    {"[\"x\"]", "", 0}, {"{}", "", 0}, {"1e16", "10000000000000000", 1874919424}, {"3000000000", nullptr, -1294967296},
    {"4294967297", nullptr, 1}, {"2147483647.5", nullptr, INT_MIN}, {"9223372036854775807", nullptr, -1}};

void useStore(const QString& fileName) { qputenv("ORV_SPEECH_CHECKSUM_FILE", fileName.toUtf8()); }

/** The entries of a store, each checksum up to its first NUL. */
QString listed(const Manager& manager) {
    QStringList texts;
    for (const Manager::Entry& entry : manager.entries()) {
        texts += entry.key.toString() + u("=") + u(entry.checksum);
    }
    return texts.join(u(" "));
}

QByteArray md5OfContent(const QString& fileName) {
    return QCryptographicHash::hash(readFile(fileName), QCryptographicHash::Md5).toHex();
}

/** A manager with one entry. */
Manager managerOf(const QString& filePath) {
    Manager manager;
    manager.insert(filePath, German, "1", Manager::DefaultChecksum);
    return manager;
}

bool isRenamingRefused = false;
bool isNewFileRefused = false;

} // namespace

// Replaces the system's function, also in Qt. Can fail as for a mount point, which cannot be replaced.
int rename(const char* from, const char* to) noexcept {
    errno = EBUSY;
    return isRenamingRefused ? -1 : reinterpret_cast<decltype(&rename)>(dlsym(RTLD_NEXT, "rename"))(from, to);
}

// Likewise. Fails as on a system without O_TMPFILE, and can fail for a new file as on a full disk.
extern "C" int open64(const char* name, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const auto mode = va_arg(arguments, mode_t);
    va_end(arguments);
    const bool isNameless = (flags & O_TMPFILE) == O_TMPFILE;
    errno = isNameless ? EOPNOTSUPP : ENOSPC;
    const bool isRefused = isNameless || (isNewFileRefused && (flags & O_EXCL) != 0);
    return isRefused ? -1 : reinterpret_cast<decltype(&open64)>(dlsym(RTLD_NEXT, "open64"))(name, flags, mode);
}

class SpeechChecksumManagerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        log.emplace();
        folder.reset(new QTemporaryDir);
        store = folder->filePath(u("störe.json"));
        useStore(store);
    }

    void cleanup() { log.reset(); }

    void keys() {
        QVERIFY(!Manager::isWritten()); // this test runs first
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
        Manager manager;
        for (const auto type : {Manager::DefaultChecksum, Manager::AlternateChecksum}) {
            manager.insert(u("f"), German, "1", type);
            manager.insert(u("f"), French, "2", type);
        }
        manager.insert(u("f"), German, QByteArray(), Manager::DefaultChecksum);
        QCOMPARE(manager.checksum(u("f"), German, Manager::DefaultChecksum), QByteArray("1"));
        manager.insert(u("f"), German, "", Manager::DefaultChecksum);
        QCOMPARE(listed(manager), u("f;de_DE;0=1 f;de_DE;1= f;fr_FR;0=2 f;fr_FR;1=2"));
        manager.remove(u("f"), German);
        QVERIFY(manager.checksum(u("f"), German, Manager::DefaultChecksum).isNull());
        manager.insert(u("f"), Thai, Manager::DefaultChecksum); // the file is missing
        QCOMPARE(listed(manager), u("f;fr_FR;0=2 f;fr_FR;1=2 f;th_TH;1=d41d8cd98f00b204e9800998ecf8427e"));
        QVERIFY(!QFile::exists(store));
        qunsetenv("ORV_SPEECH_CHECKSUM_FILE");
        const Manager usual;
        QVERIFY(log->takeTexts().last().contains(u("\"/mnt/share/speech/checksum.json\"")));
    }

    // Members of other types are converted as QVariant does.
    void loadsMembersOfAnyType_data() { addRows(members); }
    void loadsMembersOfAnyType() {
        const auto& row = currentRow(members);
        const QByteArray text = row.text == nullptr ? row.name : row.text;
        const QString element = u(R"([{"checksum": %1, "filePath": %1, "language": %1, "type": %1}])");
        QVERIFY(writeFile(store, element.arg(u(row.name)).toUtf8()));
        const QByteArray checksum =
            Manager().checksum(u(text), Language(row.number), Manager::ChecksumType(row.number));
        QCOMPARE(checksum, text);
        QVERIFY(!checksum.isNull() || text.isEmpty());
    }

    void loadsWhateverTheFileHolds() {
        QVERIFY(writeFile(store, R"([5, {"checksum": "c", "language": 1}, {"checksum": "d", "language": 1}])"));
        Manager manager;
        QCOMPARE(manager.checksum(QString(), German, Manager::AlternateChecksum), QByteArray("d"));
        manager.writePersistentData();
        QCOMPARE(QJsonDocument::fromJson(readFile(store)).array().size(), 2); // one is read from the 5
        QVERIFY(writeFile(store, "{\"filePath\": \"f\"}"));
        Manager().writePersistentData();
        QCOMPARE(readFile(store), QByteArray("[\n]\n"));
    }

    void writesAndReloads() {
        Manager manager;
        manager.insert(u("/ä"), MandarinChina, QByteArray("0\0f", 3), Manager::AlternateChecksum);
        manager.writePersistentData();
        manager.insert(u("a;b"), German, "", Manager::DefaultChecksum);
        manager.writePersistentData();
        QCOMPARE(listed(manager), u(";00_00;1= /ä;cmn_CN;0=0"));
        QCOMPARE(readFile(store), QJsonDocument::fromJson(readFile(store)).toJson()); // with two entries
        const Manager reloaded;
        QCOMPARE(listed(reloaded), listed(manager));
        QCOMPARE(reloaded.checksum(u("/ä"), MandarinChina, Manager::AlternateChecksum), QByteArray("0\0f", 3));
        // A path with a ";" is reloaded as the default key.
        QVERIFY(reloaded.checksum(u("a;b"), German, Manager::DefaultChecksum).isNull());
        QCOMPARE(reloaded.checksum(QString(), NoLanguage, Manager::DefaultChecksum), QByteArray(""));
        QVERIFY(!reloaded.checksum(QString(), NoLanguage, Manager::DefaultChecksum).isNull());
    }

    void writesWhatQtWouldWrite() {
        const QStringList fragments{u("a"), u(" ~"), u("\""), u("\\"), u("/"), u("\n"), u("\x1f"), u("\x7f"), u("ä"),
            u("中"), u("😀"), QChar(0xd800), QChar(0)};
        QRandomGenerator random(1);
        for (int round = testRounds(1000); round > 0; --round) { // few: each writes a file
            const QString path = randomText(random, fragments, 6);
            const QByteArray checksum = "c" + randomText(random, fragments, 6).toUtf8(); // not null: that is not stored
            const auto language = Language(random.bounded(-2, 40));
            const auto type = Manager::ChecksumType(random.bounded(3));
            Manager manager;
            manager.insert(path, language, checksum, type);
            manager.writePersistentData();
            const Key key(Key(path, language, type).toString());
            const QJsonObject object{{u("checksum"), QString::fromUtf8(checksum.constData(), checksum.size())},
                {u("filePath"), key.filePath}, {u("language"), key.language}, {u("type"), key.type}};
            QCOMPARE(readFile(store), QJsonDocument(QJsonArray{object}).toJson());
            manager.removeFile();
        }
    }

    void replacesTheFileInOneStep() {
        const QString target = folder->filePath(u("target.json"));
        QVERIFY(writeFile(target, "old"));
        QVERIFY(QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
        const auto permissions = QFile::permissions(target);
        QVERIFY(QFile::link(target, store));
        QFile reader(target);
        QVERIFY(reader.open(QIODevice::ReadOnly));
        Manager().writePersistentData();
        QVERIFY(QFileInfo(store).isSymLink() && Manager::isWritten());
        QCOMPARE(reader.readAll(), QByteArray("old")); // a reader of the old file still gets all of it
        QCOMPARE(readFile(target), QByteArray("[\n]\n"));
        QCOMPARE(QFile::permissions(target), permissions);

        const QString warning = u("warning: Unable to open file for writing \"%1\"");
        for (const bool isRefused : {false, true}) { // the new file cannot be written, or not even made
            isNewFileRefused = isRefused;
            QCOMPARE(linesOfWriting(managerOf(u("f")), 3), QStringList(warning.arg(store)));
            isNewFileRefused = false;
            QVERIFY(!Manager::isWritten());
            QCOMPARE(readFile(target), QByteArray("[\n]\n"));
        }
        QCOMPARE(QDir(folder->path()).entryList(QDir::Files).size(), 2);

        const QString loop = folder->filePath(u("loop")); // must stay a link
        QVERIFY(QFile::link(loop, loop));
        for (const QString& name : {QString(), folder->path(), folder->filePath(u("none/store.json")), loop}) {
            useStore(name);
            QCOMPARE(linesOfWriting(Manager()), QStringList(warning.arg(name)));
        }
        QVERIFY(QFileInfo(loop).isSymLink());

        // A pipe is not replaced and gets the store.
        const QString pipe = folder->filePath(u("pipe"));
        useStore(pipe);
        Manager writer;
        QCOMPARE(mkfifo(qUtf8Printable(pipe), 0600), 0);
        const int pipeEnd = open(qUtf8Printable(pipe), O_RDONLY | O_NONBLOCK);
        writer.writePersistentData();
        char content[10];
        QCOMPARE(read(pipeEnd, content, sizeof content), ssize_t(4));
        close(pipeEnd);
    }

    void writesInPlaceWhatCannotBeReplaced() {
        const auto write = [this] {
            QVERIFY(writeFile(store, "[]"));
            QCOMPARE(linesOfWriting(managerOf(u("f"))), QStringList());
            QVERIFY(readFile(store).contains("\"f\""));
        };
        for (const int length : {249, 255, 1}) { // the new file's longer name is too long for the first two
            store = folder->filePath(QString(length, QLatin1Char('s')));
            useStore(store);
            write();
        }
        isRenamingRefused = true;
        write();
        isRenamingRefused = false;

        // The file keeps its user and its group; only root can test that.
        const uid_t user = getuid();
        constexpr uid_t other = 12345;
        if (user == 0) {
            QCOMPARE(chown(qUtf8Printable(store), other, 0), 0);
            write();
            QCOMPARE(QFileInfo(store).ownerId(), other);
            QCOMPARE(chown(qUtf8Printable(store), 0, other), 0);
            write();
            QCOMPARE(QFileInfo(store).groupId(), other);
            QCOMPARE(chown(qUtf8Printable(store), other, 0), 0);
        }
        // A folder without write permission; root, who needs none, becomes another user.
        QCOMPARE(chmod(qUtf8Printable(folder->path()), 0555), 0);
        QVERIFY(user != 0 || setresuid(other, other, user) == 0);
        write();
        for (const int size : {1, 100'000}) { // a small one fails only when it is flushed
            QCOMPARE(linesOfWriting(managerOf(QString(size, QLatin1Char('f'))), 3).size(), 1);
        }
        QVERIFY(user != 0 || setresuid(user, user, user) == 0);
        QCOMPARE(chmod(qUtf8Printable(folder->path()), 0755), 0);
    }

    void removeFile() {
        QVERIFY(writeFile(store, "[{\"filePath\": \"f\", \"checksum\": \"1\"}]"));
        Manager manager;
        manager.removeFile();
        QVERIFY(!QFile::exists(store));
        manager.removeFile();
        QCOMPARE(manager.checksum(u("f"), NoLanguage, Manager::AlternateChecksum), QByteArray("1"));
        useStore(folder->path());
        const Manager other;
        log->takeTexts();
        manager.removeFile(); // removes the file that the last constructor set, here a folder
        const QString line = u("critical: void SpeechChecksumManager::removeFile() Could not remove old file: \"%1\"");
        QCOMPARE(log->takeTexts(), QStringList(line.arg(folder->path())));
    }

    void generateChecksum() {
        bool isRead = true;
        for (const QString& unread : {store, folder->path(), QString(), u("/proc/self/mem")}) {
            QCOMPARE(Manager::generateChecksum(unread, isRead), QByteArray("d41d8cd98f00b204e9800998ecf8427e"));
            QVERIFY(!isRead);
        }
        for (const int size : {0, 1, 65535, 65536, 65537, 1'000'000}) {
            QVERIFY(writeFile(store, QByteArray(size, '\r'))); // reading as text would drop all of it
            QCOMPARE(Manager::generateChecksum(store, isRead), md5OfContent(store));
            QVERIFY(isRead);
            isRead = false;
        }
        QVERIFY(log->takeLines().isEmpty());

        const QString shorter = u("/sys/kernel/mm/transparent_hugepage/enabled"); // than its stated size
        if (!QFile::exists(shorter)) { QSKIP("this system has no sysfs"); }
        QCOMPARE(Manager::generateChecksum(shorter), md5OfContent(shorter));
        const char* const line = "warning: static QByteArray SpeechChecksumManager::generateChecksum(const QString&) "
                                 "Could not calculate checksum for \"%1\"";
        QCOMPARE(log->takeTexts(), QStringList(u(line).arg(shorter)));
    }

private:
    /** The log lines of writing the store while files cannot grow beyond @p room bytes. */
    QStringList linesOfWriting(Manager manager, rlim_t room = RLIM_INFINITY) {
        rlimit usual;
        getrlimit(RLIMIT_FSIZE, &usual);
        const rlimit tight{qMin(room, usual.rlim_cur), usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &tight);
        std::signal(SIGXFSZ, SIG_IGN);
        log->takeTexts();
        manager.writePersistentData();
        setrlimit(RLIMIT_FSIZE, &usual);
        return log->takeTexts();
    }

    std::optional<LogCapture> log;
    QScopedPointer<QTemporaryDir> folder;
    QString store;
};

QTEST_GUILESS_MAIN(SpeechChecksumManagerTest)
#include "speechchecksummanagertest.moc"
