#include "commands/commands.h"
#include "commands/storelock.h"
#include "shell/commandline.h"
#include "shell/output.h"
#include "shell/progress.h"

#include <core/parsers/jsonfile.h>
#include <core/speech/speechchecksummanager.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace {

using Manager = SpeechChecksumManager;

constexpr char storeVariable[] = "ORV_SPEECH_CHECKSUM_FILE";

/** An element of the store file. */
struct Entry
{
    Manager::ChecksumKey key;
    QString checksum;
};

struct DataFile
{
    QString path;
    qint64 size;
};

/** What a command works on. */
struct Task
{
    QStringList paths;
    bool hasLanguage;
    Language language;
    bool hasType;
    Manager::ChecksumType type;
    bool isJson;
    QString storeFile;
    int exitCode = 0;
    QStringList ownFiles = {}; // canonical paths: the store, and what locks it
};

QString typeName(Manager::ChecksumType type)
{
    return type == Manager::AlternateChecksum ? QStringLiteral("alternate")
           : type == Manager::DefaultChecksum ? QStringLiteral("default")
                                              : QString::number(type);
}

Manager::ChecksumType typeOf(const QString& name)
{
    for (const auto type : {Manager::DefaultChecksum, Manager::AlternateChecksum}) {
        if (name == typeName(type)) {
            return type;
        }
    }
    throw Failure{QStringLiteral("unknown type: \"%1\" (default or alternate)").arg(name)};
}

/** Points the library at the store, and refuses a broken one, which is not to be overwritten. */
QVector<Entry> readStore(const Task& task, bool mayBeMissing)
{
    qputenv(storeVariable, task.storeFile.toUtf8());
    if (mayBeMissing && !QFileInfo::exists(task.storeFile)) {
        return {};
    }
    const QJsonDocument document = JsonFile::loadDocument(task.storeFile);
    if (document.isNull()) {
        throw Failure{takeLoggedFailure()};
    }
    if (!document.isArray()) {
        throw Failure{QStringLiteral("\"%1\" is no checksum store").arg(task.storeFile)};
    }
    QVector<Entry> entries;
    const QJsonArray elements = document.array();
    for (const QJsonValue& element : elements) {
        const QVariantMap map = element.toVariant().toMap();
        entries.append({{map.value(QStringLiteral("filePath")).toString(),
                            Language(map.value(QStringLiteral("language")).toInt()),
                            Manager::ChecksumType(map.value(QStringLiteral("type")).toInt())},
            map.value(QStringLiteral("checksum")).toString()});
    }
    std::stable_sort(entries.begin(), entries.end(),
        [](const Entry& a, const Entry& b) { return a.key.filePath < b.key.filePath; });
    return entries;
}

void writeStore(Manager& manager)
{
    takeLoggedFailure();
    manager.writePersistentData();
    const QString failure = takeLoggedFailure();
    if (!failure.isEmpty()) {
        throw Failure{failure};
    }
}

/** Tells of an input that cannot be used; the others go on. */
void refuse(Task& task, const QString& path, const QString& reason)
{
    printError(QStringLiteral("%1: %2").arg(path, reason));
    task.exitCode = 2;
}

void collectFile(Task& task, const QString& path, QVector<DataFile>& files)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        refuse(task, path, QStringLiteral("no such file"));
    } else if (path.contains(QLatin1Char(';'))) {
        refuse(task, path, QStringLiteral("a path with \";\" cannot be stored"));
    } else if (!info.isFile()) {
        refuse(task, path, QStringLiteral("no regular file"));
    } else if (!task.ownFiles.contains(info.canonicalFilePath())) {
        files.append({path, info.size()});
    } // and the store itself is left out: it changes with what it tells
}

/** The files in a folder and in the folders within it, without following links to folders. */
void collectFolder(Task& task, const QString& path, QVector<DataFile>& files)
{
    const QDir folder(path);
    if (!folder.isReadable()) {
        refuse(task, path, QStringLiteral("the folder cannot be read"));
    }
    const QFileInfoList entries = folder.entryInfoList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& entry : entries) {
        const QString entryPath = QDir::cleanPath(entry.filePath()); // within "." without "./"
        if (!entry.isDir()) {
            collectFile(task, entryPath, files);
        } else if (!entry.isSymLink()) {
            collectFolder(task, entryPath, files);
        }
    }
}

/** The files among @p paths and in the folders among them, in order. */
QVector<DataFile> collectFiles(Task& task, const QStringList& paths)
{
    QVector<DataFile> files;
    for (const QString& path : paths) {
        if (QFileInfo(path).isDir()) {
            collectFolder(task, path, files);
        } else {
            collectFile(task, path, files);
        }
    }
    return files;
}

/**
 * The checksum that the library would generate, block by block, so that a large file moves the bar.
 * Null when the file cannot be read to its end, where the library would answer all the same.
 */
QByteArray checksumOf(Task& task, const QString& path, Progress& progress)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    QFile file(path);
    QByteArray block(256 * 1024, Qt::Uninitialized);
    qint64 length = file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) ? 0 : -1;
    while (length >= 0 && (length = file.read(block.data(), block.size())) > 0) {
        hash.addData(block.constData(), int(length));
        progress.advance(length);
    }
    if (length < 0) {
        progress.clear();
        refuse(task, path, file.errorString());
        return QByteArray();
    }
    return hash.result().toHex();
}

/** Hands each file with its fresh checksum to @p take. */
template <typename Function>
void hashFiles(Task& task, const QVector<DataFile>& files, Function take)
{
    qint64 total = 0;
    for (const DataFile& file : files) {
        total += file.size;
    }
    Progress progress(total);
    for (const DataFile& file : files) {
        const QByteArray checksum = checksumOf(task, file.path, progress);
        if (!checksum.isNull()) {
            take(file.path, checksum, progress);
        }
    }
}

/** However services spell what they store. */
bool liesBelow(const QString& storedPath, const QStringList& roots)
{
    const QString path = QDir::cleanPath(storedPath);
    return std::any_of(roots.begin(), roots.end(), [&path](const QString& root) {
        if (root == QLatin1String(".")) {
            return QDir::isRelativePath(path) && path != QLatin1String("..")
                   && !path.startsWith(QLatin1String("../"));
        }
        const QString folder = root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/');
        return path == root || path.startsWith(folder);
    });
}

void update(Task& task)
{
    const StoreLock lock(task.storeFile);
    readStore(task, true);
    Manager manager;
    int added = 0;
    int changed = 0;
    int unchanged = 0;
    const auto store = [&](const QString& path, const QByteArray& fresh, Progress&) {
        const QByteArray stored = manager.checksum(path, task.language, task.type);
        ++(stored.isNull() ? added : stored != fresh ? changed : unchanged);
        manager.insert(path, task.language, fresh, task.type);
    };
    hashFiles(task, collectFiles(task, task.paths), store);
    writeStore(manager);
    if (task.isJson) {
        printJson({{QStringLiteral("new"), added}, {QStringLiteral("changed"), changed},
            {QStringLiteral("unchanged"), unchanged}});
    } else {
        print(QStringLiteral("%1 new, %2 changed, %3 unchanged\n")
                  .arg(added)
                  .arg(changed)
                  .arg(unchanged));
    }
}

void verify(Task& task)
{
    const auto report = [&task](const char* status, const QString& path) {
        if (task.isJson) {
            printJson({{QStringLiteral("status"), QLatin1String(status)},
                {QStringLiteral("filePath"), path}});
        } else {
            print(QStringLiteral("%1  %2\n").arg(QLatin1String(status), -7).arg(onOneLine(path)));
        }
        task.exitCode = std::max(task.exitCode, 1);
    };
    // What is stored of the paths, or everything, is there or missing; folders may hold more.
    QStringList missing;
    QStringList present;
    const QVector<Entry> stored = readStore(task, false);
    for (const Entry& entry : stored) {
        const QString& path = entry.key.filePath;
        if (entry.key.language != task.language || entry.key.type != task.type
            || !(task.paths.isEmpty() || liesBelow(path, task.paths))) {
            continue;
        }
        if (QFileInfo(path).isFile()) {
            present.append(path);
        } else {
            missing.append(path);
            report("missing", path);
        }
    }
    QStringList paths;
    const QStringList& wanted = task.paths.isEmpty() ? present : task.paths;
    for (const QString& path : wanted) {
        const auto isPartMissing = [&] {
            return std::any_of(missing.begin(), missing.end(),
                [&path](const QString& file) { return liesBelow(file, {path}); });
        };
        if (QFileInfo::exists(path) || !isPartMissing()) {
            paths.append(path);
        }
    }
    const Manager manager;
    hashFiles(task, collectFiles(task, paths),
        [&](const QString& path, const QByteArray& fresh, Progress& progress) {
            const QByteArray stored = manager.checksum(path, task.language, task.type);
            if (stored != fresh) {
                progress.clear();
                report(stored.isNull() ? "new" : "changed", path);
            }
        });
}

void refuseUnknownPaths(Task& task)
{
    printError(QStringLiteral("nothing of that is stored"));
    task.exitCode = 1;
}

void list(Task& task)
{
    int listed = 0;
    QVector<QStringList> rows;
    const QVector<Entry> entries = readStore(task, false);
    for (const Entry& entry : entries) {
        if ((task.hasLanguage && entry.key.language != task.language)
            || (task.hasType && entry.key.type != task.type)
            || (!task.paths.isEmpty() && !liesBelow(entry.key.filePath, task.paths))) {
            continue;
        }
        ++listed;
        const QString language = QString::fromLatin1(convertLanguageIdToIso(entry.key.language));
        if (task.isJson) {
            printJson({{QStringLiteral("checksum"), entry.checksum},
                {QStringLiteral("filePath"), entry.key.filePath},
                {QStringLiteral("language"), language},
                {QStringLiteral("type"), typeName(entry.key.type)}});
        } else {
            rows.append({entry.checksum, language, typeName(entry.key.type),
                onOneLine(entry.key.filePath)});
        }
    }
    printTable(rows);
    if (listed == 0 && !task.paths.isEmpty()) {
        refuseUnknownPaths(task);
    }
}

void remove(Task& task)
{
    if (task.hasType) {
        throw Failure{QStringLiteral("remove takes both types away; --type is not for it")};
    }
    const StoreLock lock(task.storeFile);
    const QVector<Entry> entries = readStore(task, false);
    Manager manager;
    int removed = 0;
    for (const Entry& entry : entries) {
        if (entry.key.language == task.language && liesBelow(entry.key.filePath, task.paths)) {
            manager.remove(entry.key.filePath, task.language);
            ++removed;
        }
    }
    if (removed == 0) {
        refuseUnknownPaths(task);
        return;
    }
    writeStore(manager);
    if (task.isJson) {
        printJson({{QStringLiteral("removed"), removed}});
    } else {
        print(QStringLiteral("%1 removed\n").arg(removed));
    }
}

struct Action
{
    const char* name;
    bool needsPaths;
    void (*run)(Task& task);
};

constexpr Action actions[] = {
    {"update", true, update},
    {"verify", false, verify},
    {"list", false, list},
    {"remove", true, remove},
};

} // namespace

int runChecksum(const QStringList& arguments)
{
    CommandLine commandLine("checksum",
        "Keeps checksums of speech data files.\n\nActions:\n"
        "  update  stores the checksums that the files have now\n"
        "  verify  shows the files that are new, changed or missing; all stored ones without PATH\n"
        "  list    shows what is stored\n"
        "  remove  forgets what is stored of the files, both types");
    commandLine.addOption(
        "language", "The language of the files; 00_00, none, without it.", "ISO", "00_00");
    commandLine.addOption(
        "type", "The kind of checksum: default (without it) or alternate.", "TYPE", "default");
    commandLine.addOption("store",
        "The store; without it the one that ORV_SPEECH_CHECKSUM_FILE names, or\n"
        "/mnt/share/speech/checksum.json. A lock file beside it, FILE.lock, keeps two\n"
        "processes from changing it at once.",
        "FILE");
    commandLine.addOption("json", "Writes JSON objects: of counts, or one per file.");
    commandLine.addArgument("action", "update, verify, list or remove.", "ACTION");
    commandLine.addArgument("path",
        "Files, or folders with all that lies in them; stored without \"./\" and the like.",
        "[PATH…]");
    commandLine.addExample("update --language de_DE speech/de_DE");
    commandLine.addExample("verify");
    commandLine.process(arguments, arguments.size());

    const QStringList words = commandLine.arguments();
    const auto* const action =
        std::find_if(std::begin(actions), std::end(actions), [&words](const Action& candidate) {
            return words.value(0) == QLatin1String(candidate.name);
        });
    if (action == std::end(actions)) {
        throw Failure{QStringLiteral("one of update, verify, list and remove is needed")};
    }
    if (action->needsPaths && words.size() < 2) {
        throw Failure{QStringLiteral("%1 needs a file or a folder").arg(words[0])};
    }
    Task task{words.mid(1), commandLine.isSet("language"), commandLine.language(),
        commandLine.isSet("type"), typeOf(commandLine.value("type")), commandLine.isSet("json"),
        commandLine.value("store")};
    if (!commandLine.isSet("store")) {
        task.storeFile =
            qEnvironmentVariable(storeVariable, QStringLiteral("/mnt/share/speech/checksum.json"));
    }
    task.ownFiles << QFileInfo(task.storeFile).canonicalFilePath() << lockFileOf(task.storeFile);
    for (QString& path : task.paths) {
        if (path.isEmpty()) {
            throw Failure{QStringLiteral("a path is empty")};
        }
        path = QDir::cleanPath(path); // one spelling of a path, as it is looked up by it
    }
    action->run(task);
    return task.exitCode;
}
