#include "commands/commands.h"
#include "commands/storelock.h"
#include "shell/failure.h"
#include "shell/files.h"
#include "shell/input.h"
#include "shell/languages.h"
#include "shell/listing.h"
#include "shell/output.h"
#include "shell/progress.h"
#include "shell/text.h"
#include "shell/words.h"

#include <core/speech/speechchecksummanager.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QJsonObject>

#include <algorithm>
#include <optional>

namespace {

using Manager = SpeechChecksumManager;
using Entry = Manager::Entry;

constexpr char storeVariable[] = "ORV_SPEECH_CHECKSUM_FILE";

/** What an action works on. */
struct Task
{
    QStringList paths;
    std::optional<Language> language; ///< empty for all
    std::optional<Manager::ChecksumType> type;
    bool isJson;
    QString storeFile;
    int exitCode = 0;
    QStringList ownFiles = {}; ///< canonical paths: the store and its lock

    bool wants(const Manager::ChecksumKey& key) const
    {
        return key.language == language.value_or(key.language)
               && key.type == type.value_or(key.type);
    }
};

QStringList typeNames()
{
    return {u"alternate"_s, u"default"_s}; // by value
}

QString typeName(Manager::ChecksumType type)
{
    return typeNames().value(type, QString::number(type));
}

QString codeOf(Language language)
{
    return QString::fromLatin1(convertLanguageIdToIso(language));
}

/** Points the library at the store, and refuses a broken one, which must not be overwritten. */
Manager openStore(const Task& task, bool mayBeMissing)
{
    qputenv(storeVariable, task.storeFile.toUtf8());
    if (mayBeMissing && !QFileInfo::exists(task.storeFile)) {
        return Manager();
    }
    Manager manager;
    if (manager.entries().isEmpty()) {
        QString name = task.storeFile;
        if (!readJson(name).isArray()) {
            throw Failure{u"%1: not a checksum store, which is an array"_s.arg(name)};
        }
    }
    return manager;
}

void writeStore(Manager& manager, const Task& task)
{
    manager.writePersistentData();
    if (!Manager::isWritten()) {
        throw Failure{u"%1: the store cannot be written"_s.arg(task.storeFile)};
    }
}

/** Tells of an input that cannot be used; the others go on. */
void refuse(Task& task, const QString& path, const QString& reason)
{
    printError(u"%1: %2"_s.arg(path, reason));
    task.exitCode = 2;
}

/** The files among @p paths and in the folders among them, in order, without the store itself. */
QVector<FoundFile> collectFiles(Task& task, const QStringList& paths)
{
    QVector<FoundFile> files;
    for (const QString& path : paths) {
        const QVector<FoundFile> found = filesAt(path);
        for (const FoundFile& file : found) {
            if (!file.problem.isEmpty()) {
                refuse(task, file.path, file.problem);
            } else if (file.path.contains(u';')) {
                refuse(task, file.path, u"a path with \";\" cannot be stored"_s);
            } else if (!task.ownFiles.contains(QFileInfo(file.path).canonicalFilePath())) {
                files.append(file);
            }
        }
    }
    return files;
}

/**
 * The checksum that the library would generate, block by block, so that a large file moves the bar.
 * Null when the file cannot be read to its end.
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
        refuse(task, path, file.errorString());
        return QByteArray();
    }
    return hash.result().toHex();
}

/** Passes each file with its fresh checksum to @p take. */
template <typename Function>
void hashFiles(Task& task, const QVector<FoundFile>& files, Function take)
{
    qint64 total = 0;
    for (const FoundFile& file : files) {
        total += file.size;
    }
    Progress progress(total);
    for (const FoundFile& file : files) {
        const QByteArray checksum = checksumOf(task, file.path, progress);
        if (!checksum.isNull()) {
            take(file.path, checksum);
        }
    }
}

/** Whether a stored path, in any spelling, is one of @p roots or lies below one. */
bool liesBelow(const QString& storedPath, const QStringList& roots)
{
    const QString path = QDir::cleanPath(storedPath);
    return std::any_of(roots.begin(), roots.end(), [&path](const QString& root) {
        if (root == u"."_s) {
            return QDir::isRelativePath(path) && path != u".."_s && !path.startsWith(u"../"_s);
        }
        const QString folder = root.endsWith(u'/') ? root : root + u'/';
        return path == root || path.startsWith(folder);
    });
}

/** What the task asks for of the stored entries. */
QVector<Entry> wantedEntries(const Task& task, const Manager& manager)
{
    QVector<Entry> wanted;
    const QList<Entry> entries = manager.entries();
    for (const Entry& entry : entries) {
        if (task.wants(entry.key)
            && (task.paths.isEmpty() || liesBelow(entry.key.filePath, task.paths))) {
            wanted += entry;
        }
    }
    return wanted;
}

void update(Task& task)
{
    const StoreLock lock(task.storeFile);
    Manager manager = openStore(task, true);
    const Language language = task.language.value_or(NoLanguage);
    const auto type = task.type.value_or(Manager::DefaultChecksum);
    int added = 0;
    int changed = 0;
    int unchanged = 0;
    hashFiles(
        task, collectFiles(task, task.paths), [&](const QString& path, const QByteArray& fresh) {
            const QByteArray stored = manager.checksum(path, language, type);
            ++(stored.isNull() ? added : stored != fresh ? changed : unchanged);
            manager.insert(path, language, fresh, type);
        });
    writeStore(manager, task);
    if (task.isJson) {
        printJson({{u"new"_s, added}, {u"changed"_s, changed}, {u"unchanged"_s, unchanged}});
    } else {
        print(u"%1 new, %2 changed, %3 unchanged\n"_s.arg(added).arg(changed).arg(unchanged));
    }
}

/** What came of each comparison, by its status. */
using Counts = QHash<QString, int>;

/** People learn the language and type only where they are not the usual ones. */
void report(Task& task, Counts& counts, const char* status, const Manager::ChecksumKey& key)
{
    ++counts[QLatin1String(status)];
    if (qstrcmp(status, "asStored") == 0) {
        return;
    }
    task.exitCode = std::max(task.exitCode, 1);
    if (task.isJson) {
        printJson({{u"status"_s, QLatin1String(status)}, {u"filePath"_s, key.filePath},
            {u"language"_s, codeOf(key.language)}, {u"type"_s, typeName(key.type)}});
        return;
    }
    const bool isUsual = key.language == NoLanguage && key.type == Manager::DefaultChecksum;
    print(u"%1  %2%3\n"_s.arg(QLatin1String(status), -7)
              .arg(onOneLine(key.filePath),
                  isUsual ? QString()
                          : u"  (%1, %2)"_s.arg(codeOf(key.language), typeName(key.type))));
}

void reportTotal(Task& task, const Counts& counts)
{
    int total = 0;
    QStringList parts;
    QJsonObject object{{u"status"_s, u"total"_s}};
    for (const char* status : {"asStored", "changed", "missing", "new"}) {
        const int count = counts.value(QLatin1String(status));
        total += count;
        object.insert(QLatin1String(status), count);
        if (count > 0) {
            parts += u"%1 %2"_s.arg(count).arg(
                QLatin1String(qstrcmp(status, "asStored") == 0 ? "as stored" : status));
        }
    }
    object.insert(u"files"_s, total);
    if (total == 0) {
        task.exitCode = std::max(task.exitCode, 1);
    }
    if (task.isJson) {
        printJson(object);
    } else {
        printError(counted(total, "file") + QLatin1String(parts.isEmpty() ? "" : ": ")
                   + parts.join(u", "_s));
    }
}

void verify(Task& task)
{
    const Manager manager = openStore(task, false);
    Counts counts;
    QHash<QString, QVector<Entry>> present; // by cleaned path
    QStringList presentPaths;
    QStringList missing;
    const QVector<Entry> stored = wantedEntries(task, manager);
    for (const Entry& entry : stored) {
        const QString& path = entry.key.filePath;
        if (!QFileInfo(path).isFile()) {
            missing += path;
            report(task, counts, "missing", entry.key);
            continue;
        }
        QVector<Entry>& entries = present[QDir::cleanPath(path)];
        presentPaths += entries.isEmpty() ? QStringList(path) : QStringList();
        entries += entry;
    }
    // Folders may hold further files. A path that is missing as a whole was reported above.
    QStringList paths = task.paths.isEmpty() ? presentPaths : task.paths;
    const auto isReported = [&missing](const QString& path) {
        return !QFileInfo::exists(path)
               && std::any_of(missing.begin(), missing.end(),
                   [&path](const QString& file) { return liesBelow(file, {path}); });
    };
    paths.erase(std::remove_if(paths.begin(), paths.end(), isReported), paths.end());
    hashFiles(task, collectFiles(task, paths), [&](const QString& path, const QByteArray& fresh) {
        const QVector<Entry> entries = present.value(QDir::cleanPath(path));
        if (entries.isEmpty()) {
            report(task, counts, "new",
                {path, task.language.value_or(NoLanguage),
                    task.type.value_or(Manager::DefaultChecksum)});
        }
        for (const Entry& entry : entries) {
            report(task, counts, entry.checksum == fresh ? "asStored" : "changed", entry.key);
        }
    });
    reportTotal(task, counts);
}

void refuseUnknownPaths(Task& task)
{
    printError(u"nothing is stored of that"_s);
    task.exitCode = 1;
}

void list(Task& task)
{
    const QVector<Entry> entries = wantedEntries(task, openStore(task, false));
    Listing listing(task.isJson, {{"checksum"}, {"language"}, {"type"}, {"filePath"}});
    for (const Entry& entry : entries) {
        listing.add({QString::fromUtf8(entry.checksum), codeOf(entry.key.language),
            typeName(entry.key.type), entry.key.filePath});
    }
    listing.finish();
    if (entries.isEmpty() && !task.paths.isEmpty()) {
        refuseUnknownPaths(task);
    }
}

void remove(Task& task)
{
    if (task.type) {
        throw Failure{u"remove always removes both types; --type is not for it"_s};
    }
    task.language = task.language.value_or(NoLanguage);
    const StoreLock lock(task.storeFile);
    Manager manager = openStore(task, false);
    const QVector<Entry> entries = wantedEntries(task, manager);
    if (entries.isEmpty()) {
        refuseUnknownPaths(task);
        return;
    }
    for (const Entry& entry : entries) {
        manager.remove(entry.key.filePath, entry.key.language);
    }
    writeStore(manager, task);
    if (task.isJson) {
        printJson({{u"removed"_s, entries.size()}});
    } else {
        print(u"%1 removed\n"_s.arg(entries.size()));
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

QStringList actionNames()
{
    QStringList names;
    for (const Action& action : actions) {
        names += QLatin1String(action.name);
    }
    return names;
}

Task taskOf(const CommandLine& commandLine)
{
    Task task{commandLine.arguments().mid(1), {}, {}, commandLine.isSet("json"),
        commandLine.value("store")};
    if (commandLine.isSet("language")) {
        task.language = commandLine.language();
    }
    if (commandLine.isSet("type")) {
        task.type =
            Manager::ChecksumType(placeAmong(typeNames(), "type", commandLine.value("type")));
    }
    if (!commandLine.isSet("store")) {
        task.storeFile = qEnvironmentVariable(storeVariable, u"/mnt/share/speech/checksum.json"_s);
    }
    task.ownFiles << QFileInfo(task.storeFile).canonicalFilePath() << lockFileOf(task.storeFile);
    for (QString& path : task.paths) {
        if (path.isEmpty()) {
            throw Failure{u"a path is empty"_s};
        }
        path = QDir::cleanPath(path); // one spelling, as entries are found by it
    }
    return task;
}

int run(const CommandLine& commandLine)
{
    const QStringList words = commandLine.arguments();
    if (words.isEmpty()) {
        throw Failure{u"one of update, verify, list and remove is needed"_s};
    }
    const Action& action = actions[placeAmong(actionNames(), "action", words[0])];
    if (action.needsPaths && words.size() < 2) {
        throw Failure{u"%1 needs a file or a folder"_s.arg(words[0])};
    }
    Task task = taskOf(commandLine);
    action.run(task);
    return task.exitCode;
}

} // namespace

Command checksumCommand()
{
    return {"checksum", "keeps checksums of speech data: update, verify, list, remove",
        u"Keeps checksums of speech data files.\n\nActions:\n"
        "  update  stores the checksums that the files have now\n"
        "  verify  shows the files that are new, changed or missing; without PATH, all\n"
        "          that are stored; without --language and --type, in all languages and\n"
        "          types. It ends with a count. Exit code: 0 when all is as stored, 1 for\n"
        "          any difference or no files, 2 when a file cannot be read.\n"
        "  list    shows what is stored\n"
        "  remove  forgets what is stored of the files, both types"_s,
        {{"action", "ACTION", "update, verify, list or remove.", actionNames},
            {"path", "[PATH…]",
                "Files, or folders with all files in them; stored without \"./\" and the like."}},
        {{"language",
             "The language of the files. Without it, update and remove take 00_00 (none), the "
             "others all.",
             "ISO", "", languageCodes},
            {"type",
                "The kind of checksum: default or alternate. Without it, update takes default, "
                "the others both.",
                "TYPE", "", typeNames},
            {"store",
                "The store; without it the one that ORV_SPEECH_CHECKSUM_FILE names, or "
                "/mnt/share/speech/checksum.json. A lock file beside it, FILE.lock, keeps two "
                "processes from changing it at once.",
                "FILE"},
            {"json", "Writes JSON objects: of counts, or one per file."}},
        {u"update --language de_DE speech/de_DE"_s, u"verify"_s}, run};
}
