#include "commands/commands.h"

#include <core/speech/speechchecksummanager.h>

#include <QLockFile>

#include <algorithm>
#include <memory>
#include <optional>

namespace {

using Manager = SpeechChecksumManager;
using Entry = Manager::Entry;

constexpr char storeVariable[] = "ORV_SPEECH_CHECKSUM_FILE";
constexpr int waitingTime = 3000; // milliseconds, for a lock
constexpr int mostLinks = 40;     // the limit of the system

/** The arguments of an action. */
struct Task
{
    QStringList paths;
    std::optional<Language> language; ///< none for all
    std::optional<Manager::ChecksumType> type;
    bool isJson;
    QString storeFile;
};

QStringList typeNames()
{
    return {u"alternate"_s, u"default"_s}; // by value
}

QString typeName(Manager::ChecksumType type)
{
    return typeNames().value(type, QString::number(type));
}

/**
 * The path of the lock file of a store, which may not exist yet. It is beside the file itself, so
 * all links to the file share one lock. Null if that folder does not exist.
 */
QString lockFileOf(const QString& storeFile)
{
    QFileInfo store(storeFile);
    for (int i = 0; i < mostLinks && store.isSymLink(); ++i) {
        store.setFile(store.symLinkTarget());
    }
    const QString folder = QFileInfo(store.path()).canonicalFilePath();
    return folder.isEmpty() ? QString() : QDir(folder).filePath(store.fileName() + u".lock"_s);
}

QString holderOf(const QLockFile& lock)
{
    qint64 process = 0;
    QString host;
    QString program;
    return lock.getLockInfo(&process, &host, &program)
               ? u"process %1 (%2) on %3"_s.arg(process).arg(program, host)
               : u"an unknown process"_s;
}

/** Locks the store against other processes while the result exists. @throw Failure if one holds it */
std::unique_ptr<QLockFile> lockStore(const QString& storeFile)
{
    const QString file = lockFileOf(storeFile);
    failIf(file.isNull(), u"\"%1\": no such folder"_s.arg(storeFile));
    auto lock = std::make_unique<QLockFile>(file);
    // Hashing may take long: a lock ends with its process, not at a certain age.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(waitingTime)) {
        failIf(lock->error() != QLockFile::LockFailedError,
            u"\"%1\" cannot be locked: cannot write \"%2\""_s.arg(storeFile, file));
        throw Failure{u"\"%1\" is locked by %2; if that has ended, remove \"%3\""_s.arg(
            storeFile, holderOf(*lock), file)};
    }
    return lock;
}

/** Opens the store with the library. @throw Failure for a broken one, which must not be lost */
Manager openStore(const Task& task, bool mayBeMissing)
{
    qputenv(storeVariable, task.storeFile.toUtf8());
    if (mayBeMissing && !QFileInfo::exists(task.storeFile)) {
        return Manager();
    }
    Manager manager;
    if (manager.entries().isEmpty()) {
        Input store(task.storeFile);
        failIf(!store.readJson().isArray(),
            u"%1: not a checksum store, which is an array"_s.arg(store.name));
    }
    return manager;
}

void writeStore(Manager& manager, const Task& task)
{
    manager.writePersistentData();
    failIf(!Manager::isWritten(), u"%1: the store cannot be written"_s.arg(task.storeFile));
}

/**
 * Calls @p take with the path and the present checksum of each file of @p paths and of the folders
 * among them, except the store and its lock.
 */
template <typename Function>
void hashFiles(const Task& task, const QStringList& paths, Function take)
{
    const QStringList ownFiles{
        QFileInfo(task.storeFile).canonicalFilePath(), lockFileOf(task.storeFile)};
    QStringList files;
    qint64 total = 0;
    for (const QString& path : paths) {
        const QStringList found = filesAt(path);
        for (const QString& file : found) {
            if (file.contains(u';')) {
                printError(file + u": a path with \";\" cannot be stored"_s, 2);
            } else if (!ownFiles.contains(QFileInfo(file).canonicalFilePath())) {
                files += file;
                total += QFileInfo(file).size();
            }
        }
    }
    Progress progress(total);
    for (const QString& path : qAsConst(files)) {
        bool isRead = false;
        const QByteArray checksum = Manager::generateChecksum(path, isRead);
        if (isRead) {
            take(path, checksum);
        } else {
            QFile unread(path);
            const bool isOpen = unread.open(QIODevice::ReadOnly);
            const QString reason = isOpen ? u"cannot be read to its end"_s : unread.errorString();
            printError(path + u": "_s + reason, 2);
        }
        progress.advance(QFileInfo(path).size());
    }
}

/** Whether a stored path, in any spelling, is one of @p roots or below one. */
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

/** The stored entries that the task selects. */
QVector<Entry> wantedEntries(const Task& task, const Manager& manager)
{
    QVector<Entry> wanted;
    const QList<Entry> entries = manager.entries();
    for (const Entry& entry : entries) {
        const auto& [path, language, type] = entry.key;
        if (language == task.language.value_or(language) && type == task.type.value_or(type)
            && (task.paths.isEmpty() || liesBelow(path, task.paths))) {
            wanted += entry;
        }
    }
    return wanted;
}

void update(Task& task)
{
    const auto lock = lockStore(task.storeFile);
    Manager manager = openStore(task, true);
    const Language language = task.language.value_or(NoLanguage);
    const auto type = task.type.value_or(Manager::DefaultChecksum);
    int added = 0;
    int changed = 0;
    int unchanged = 0;
    hashFiles(task, task.paths, [&](const QString& path, const QByteArray& fresh) {
        const QByteArray stored = manager.checksum(path, language, type);
        ++(stored.isNull() ? added : stored != fresh ? changed : unchanged);
        manager.insert(path, language, fresh, type);
    });
    writeStore(manager, task);
    printRecord({{"new", added, "%1 new, "}, {"changed", changed, "%1 changed, "},
        {"unchanged", unchanged, "%1 unchanged\n"}});
}

/** Prints a difference. The text has the language and type only if they are not the defaults. */
void report(const QString& status, const Manager::ChecksumKey& key)
{
    raiseExitCode(1);
    const QString language = codeOf(key.language);
    const QString type = typeName(key.type);
    const bool isUsual = key.language == NoLanguage && key.type == Manager::DefaultChecksum;
    printRecord({{"status", status, "%1  ", -7}, {"filePath", key.filePath, "%1"},
        {"language", language}, {"type", type},
        {nullptr, isUsual ? QString() : u"  (%1, %2)"_s.arg(language, type), "%1\n"}});
}

/** Prints how many files have which status. */
void reportTotal(const Task& task, const QMap<QString, int>& counts)
{
    int total = 0;
    QStringList parts;
    QJsonObject object{{u"status"_s, u"total"_s}};
    for (auto count = counts.begin(); count != counts.end(); ++count) {
        total += *count;
        object.insert(count.key(), *count);
        if (*count > 0) {
            const QString name = count.key() == u"asStored"_s ? u"as stored"_s : count.key();
            parts += u"%1 %2"_s.arg(*count).arg(name);
        }
    }
    object.insert(u"files"_s, total);
    raiseExitCode(total == 0 ? 1 : 0);
    if (task.isJson) {
        printJson(object);
    } else {
        printError(
            counted(total, "file") + (parts.isEmpty() ? QString() : u": "_s) + parts.join(u", "_s));
    }
}

void verify(Task& task)
{
    const Manager manager = openStore(task, false);
    QMap<QString, int> counts{
        {u"asStored"_s, 0}, {u"changed"_s, 0}, {u"missing"_s, 0}, {u"new"_s, 0}};
    const auto count = [&](const QString& status, const Manager::ChecksumKey& key) {
        ++counts[status];
        if (status != u"asStored"_s) {
            report(status, key);
        }
    };
    QMap<QString, QVector<Entry>> present; // by clean path
    QStringList missing;
    const QVector<Entry> stored = wantedEntries(task, manager);
    for (const Entry& entry : stored) {
        const QString& path = entry.key.filePath;
        if (QFileInfo(path).isFile()) {
            present[QDir::cleanPath(path)] += entry;
        } else {
            missing += path;
            count(u"missing"_s, entry.key);
        }
    }
    // Folders may contain new files. Missing paths with stored files were reported above.
    QStringList paths = task.paths.isEmpty() ? present.keys() : task.paths;
    const auto isReported = [&missing](const QString& path) {
        return !QFileInfo::exists(path)
               && std::any_of(missing.begin(), missing.end(),
                   [&path](const QString& file) { return liesBelow(file, {path}); });
    };
    paths.erase(std::remove_if(paths.begin(), paths.end(), isReported), paths.end());
    hashFiles(task, paths, [&](const QString& path, const QByteArray& fresh) {
        const QVector<Entry> entries = present.value(path);
        if (entries.isEmpty()) {
            const auto type = task.type.value_or(Manager::DefaultChecksum);
            count(u"new"_s, {path, task.language.value_or(NoLanguage), type});
        }
        for (const Entry& entry : entries) {
            count(entry.checksum == fresh ? u"asStored"_s : u"changed"_s, entry.key);
        }
    });
    reportTotal(task, counts);
}

void list(Task& task)
{
    const QVector<Entry> entries = wantedEntries(task, openStore(task, false));
    Listing listing;
    for (const Entry& entry : entries) {
        listing.add({{"checksum", QString::fromUtf8(entry.checksum.constData()), ""},
            {"language", codeOf(entry.key.language), ""}, {"type", typeName(entry.key.type), ""},
            {"filePath", entry.key.filePath, ""}});
    }
    listing.finish();
    if (entries.isEmpty() && !task.paths.isEmpty()) {
        printError(u"nothing is stored of that"_s, 1);
    }
}

void remove(Task& task)
{
    failIf(task.type.has_value(), u"remove always removes both types, so it takes no --type"_s);
    task.language = task.language.value_or(NoLanguage);
    const auto lock = lockStore(task.storeFile);
    Manager manager = openStore(task, false);
    const QVector<Entry> entries = wantedEntries(task, manager);
    if (entries.isEmpty()) {
        printError(u"nothing is stored of that"_s, 1);
        return;
    }
    for (const Entry& entry : entries) {
        manager.remove(entry.key.filePath, entry.key.language);
    }
    writeStore(manager, task);
    printRecord({{"removed", entries.size(), "%1 removed\n"}});
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

Task taskOf(const CommandLine& commandLine)
{
    Task task{commandLine.positionalArguments().mid(1), {}, {}, commandLine.isSet(u"json"_s),
        commandLine.value(u"store"_s)};
    if (commandLine.isSet(u"language"_s)) {
        task.language = languageOf(commandLine);
    }
    if (commandLine.isSet(u"type"_s)) {
        task.type =
            Manager::ChecksumType(placeAmong(typeNames(), "type", commandLine.value(u"type"_s)));
    }
    if (!commandLine.isSet(u"store"_s)) {
        task.storeFile = qEnvironmentVariable(storeVariable, u"/mnt/share/speech/checksum.json"_s);
    }
    for (QString& path : task.paths) {
        failIf(path.isEmpty(), u"a path is empty"_s);
        path = QDir::cleanPath(path); // one spelling, by which entries are found
    }
    return task;
}

void run(const CommandLine& commandLine)
{
    const QStringList words = commandLine.positionalArguments();
    failIf(words.isEmpty(), u"one of update, verify, list and remove is needed"_s);
    const Action& action = actions[placeAmong(namesOf(actions), "action", words[0])];
    failIf(action.needsPaths && words.size() < 2, words[0] + u" needs a file or a folder"_s);
    Task task = taskOf(commandLine);
    action.run(task);
}

} // namespace

const Command checksumCommand = {"checksum",
    "keeps checksums of speech data: update, verify, list, remove",
    u"Keeps checksums of speech data files in a store.\n\nActions:\n"
    "  update  stores the current checksums of the files\n"
    "  verify  shows which files are new, changed or missing, and then the number of\n"
    "          files. Without PATH, it compares all stored files. Exit code: 0 if all\n"
    "          files are as stored, 1 if a file differs or there are no files, 2 if a\n"
    "          file cannot be read.\n"
    "  list    shows the stored checksums\n"
    "  remove  removes the stored checksums of the files"_s,
    {{"action", "ACTION", "update, verify, list or remove.", [] { return namesOf(actions); }},
        {"path", "[PATH…]",
            "A file, or a folder with all files in it. Paths are stored without \"./\" and "
            "\"//\"."}},
    {languageOption("The language of the files. Without it, update and remove use 00_00 "
                    "(none); verify and list use all languages."),
        {"type",
            "The type of checksum: default or alternate. Without it, update uses default; "
            "verify and list use both. remove always removes both.",
            "TYPE", "", typeNames},
        {"store",
            "The file of the store. The default is the value of ORV_SPEECH_CHECKSUM_FILE, or "
            "/mnt/share/speech/checksum.json if that is not set. update and remove lock the "
            "store with the file FILE.lock.",
            "FILE"},
        jsonOption},
    {u"update --language de_DE speech/de_DE"_s, u"verify"_s}, run};
