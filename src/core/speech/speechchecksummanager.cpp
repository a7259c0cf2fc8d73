#include <core/speech/speechchecksummanager.h>

#include <core/log_p.h>
#include <core/parsers/jsonfile.h>

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStringBuilder>
#include <QTemporaryFile>
#include <QVariant>

#include <algorithm>
#include <cerrno>
#include <tuple>

static_assert(sizeof(SpeechChecksumManager::ChecksumType) == 4, "the size is interface");

namespace {

using Size = QByteArray::size_type;

// Shared by all instances; each constructor call sets it.
QString checksumFilePath;

// Whether the last write of any instance succeeded.
bool wasWritten = false;

// Members of any type are converted by QVariant. Members of the types that the library writes are
// read without a variant, which is faster.

QString readText(const QJsonValue& value)
{
    return value.isString() ? value.toString() : value.toVariant().toString();
}

int readNumber(const QJsonValue& value)
{
    constexpr int notAnInteger = -1;
    const int number = value.toInt(notAnInteger);
    if (number != notAnInteger) {
        return number;
    }
    // A negative half is rounded up here: variants of Qt 6 round it down, unlike those of Qt 5.
    const double real = value.toDouble();
    constexpr double leastHalf = -4503599627370496; // numbers below it are whole
    if (real < 0 && real > leastHalf && real - double(qint64(real)) == -0.5) {
        return int(qint64(real));
    }
    return value.toVariant().toInt();
}

/** Appends @p text as a JSON string. Qt does the escaping. */
void appendString(QByteArray& json, const QString& text)
{
    const auto isPlain = [](QChar c) {
        return c >= QLatin1Char(' ') && c <= QLatin1Char('~') && c != QLatin1Char('"')
               && c != QLatin1Char('\\');
    };
    if (std::all_of(text.cbegin(), text.cend(), isPlain)) {
        json += '"' % text.toLatin1() % '"';
    } else {
        const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
        json.append(array.constData() + 1, array.size() - 2); // without its brackets
    }
}

/** Appends an entry of the store, with the indentation of QJsonDocument. */
void appendElement(
    QByteArray& json, const SpeechChecksumManager::ChecksumKey& key, const QByteArray& checksum)
{
    json += "    {\n        \"checksum\": ";
    appendString(json, QString::fromUtf8(checksum.constData(), checksum.size()));
    json += ",\n        \"filePath\": ";
    appendString(json, key.filePath);
    json += ",\n        \"language\": " % QByteArray::number(key.language) % ",\n        \"type\": "
            % QByteArray::number(key.type) % "\n    }";
}

bool write(QFileDevice& file, const QByteArray& content)
{
    return file.write(content) == content.size() && file.flush();
}

bool writeInPlace(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && write(file, content);
}

/** Whether the folder of @p target is writable and gives a new file the same user and group. */
bool wouldKeepOwner(const QFileInfo& target)
{
    if (!QFileInfo(target.canonicalPath()).isWritable()) {
        return false;
    }
    QTemporaryFile newFile(target.canonicalFilePath());
    if (!newFile.open()) {
        return true; // such as a full disk: replacing fails too and keeps the old file
    }
    const QFileInfo made(newFile.fileName());
    return made.ownerId() == target.ownerId() && made.groupId() == target.groupId();
}

bool replaceFile(const QString& fileName, const QByteArray& content)
{
    if (fileName.isEmpty()) {
        return false; // QFile would log a warning
    }
    // Write in place if the target is no regular file, would change owner, or is a broken link.
    const QFileInfo target(fileName);
    const bool isReplaceable =
        target.exists() ? target.isFile() && wouldKeepOwner(target) : !target.isSymLink();
    if (!isReplaceable) {
        return writeInPlace(fileName, content);
    }
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        // The new file has a longer name, which may be too long. After any other error, such as a
        // full disk, the old file stays.
        return errno == ENAMETOOLONG && writeInPlace(fileName, content);
    }
    if (!write(file, content)) {
        return false;
    }
    // A folder may allow making a file but not replacing this one.
    return file.commit()
           || (file.error() == QFileDevice::RenameError && writeInPlace(fileName, content));
}

QString keyText(
    const QString& filePath, Language language, SpeechChecksumManager::ChecksumType type)
{
    const QByteArray isoBytes = convertLanguageIdToIso(language);
    const QLatin1String iso(isoBytes.constData(), isoBytes.size());
    constexpr QLatin1Char separator(';');
    if (type >= 0 && type <= 9) { // the usual ones, in one allocation
        return filePath % separator % iso % separator % QLatin1Char(char('0' + type));
    }
    return filePath % separator % iso % separator % QString::number(type);
}

} // namespace

SpeechChecksumManager::ChecksumKey::ChecksumKey(
    const QString& filePath, Language language, ChecksumType type)
    : filePath(filePath)
    , language(language)
    , type(type)
{}

SpeechChecksumManager::ChecksumKey::ChecksumKey(const QString& key)
{
    const QStringList parts = key.split(QLatin1Char(';'));
    if (parts.size() == 3) {
        filePath = parts[0];
        language = convertIsoToLanguageId(parts[1].toUtf8());
        type = ChecksumType(parts[2].toInt());
    }
}

QString SpeechChecksumManager::ChecksumKey::toString() const
{
    return keyText(filePath, language, type);
}

bool SpeechChecksumManager::ChecksumKey::operator==(const ChecksumKey& other) const
{
    return std::tie(filePath, language, type)
           == std::tie(other.filePath, other.language, other.type);
}

SpeechChecksumManager::SpeechChecksumManager()
{
    constexpr char variable[] = "ORV_SPEECH_CHECKSUM_FILE";
    checksumFilePath = qEnvironmentVariableIsSet(variable)
                           ? QString::fromUtf8(qgetenv(variable))
                           : QStringLiteral("/mnt/share/speech/checksum.json");

    // array() and toObject() are empty for any other type, so a wrong file loads nothing.
    const QJsonArray elements = JsonFile::loadDocument(checksumFilePath).array();
    checksums.reserve(elements.size());
    for (const QJsonValue& element : elements) {
        const QJsonObject object = element.toObject();
        const ChecksumKey key(readText(object.value(QLatin1String("filePath"))),
            Language(readNumber(object.value(QLatin1String("language")))),
            ChecksumType(readNumber(object.value(QLatin1String("type")))));
        checksums.insert(
            key.toString(), readText(object.value(QLatin1String("checksum"))).toUtf8());
    }
}

QByteArray SpeechChecksumManager::checksum(
    const QString& filePath, Language language, ChecksumType type) const
{
    return checksums.value(keyText(filePath, language, type));
}

QList<SpeechChecksumManager::Entry> SpeechChecksumManager::entries() const
{
    QList<Entry> list;
    list.reserve(checksums.size());
    for (auto entry = checksums.constBegin(); entry != checksums.constEnd(); ++entry) {
        list.append({ChecksumKey(entry.key()), entry.value()});
    }
    std::sort(list.begin(), list.end(), [](const Entry& a, const Entry& b) {
        return std::tie(a.key.filePath, a.key.language, a.key.type)
               < std::tie(b.key.filePath, b.key.language, b.key.type);
    });
    return list;
}

void SpeechChecksumManager::insert(
    const QString& filePath, Language language, const QByteArray& checksum, ChecksumType type)
{
    if (!checksum.isNull()) {
        checksums.insert(keyText(filePath, language, type), checksum);
    }
}

void SpeechChecksumManager::insert(const QString& filePath, Language language, ChecksumType type)
{
    insert(filePath, language, generateChecksum(filePath), type);
}

void SpeechChecksumManager::remove(const QString& filePath, Language language)
{
    checksums.remove(keyText(filePath, language, DefaultChecksum));
    checksums.remove(keyText(filePath, language, AlternateChecksum));
}

QByteArray SpeechChecksumManager::generateChecksum(const QString& filePath)
{
    bool isRead = false;
    return generateChecksum(filePath, isRead);
}

QByteArray SpeechChecksumManager::generateChecksum(const QString& filePath, bool& isRead)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    QFile file(filePath);
    isRead = false;
    if (!filePath.isEmpty() && file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        // Large blocks: QCryptographicHash would read a kilobyte at a time.
        QByteArray block(64 * 1024, Qt::Uninitialized);
        qint64 length = 0;
        bool isAtEnd = false;
        do {
            length = file.read(block.data(), block.size());
            hash.addData(
                QByteArray::fromRawData(block.constData(), Size(std::max<qint64>(length, 0))));
            isAtEnd = length < block.size() && file.atEnd();
        } while (length > 0 && !isAtEnd);
        isRead = length >= 0 && isAtEnd;
        // Not at the end: a read error, or the file is shorter than its stated size.
        if (!isAtEnd) {
            ORV_LOG(warning,
                "static QByteArray SpeechChecksumManager::generateChecksum(const QString&)")
                << "Could not calculate checksum for" << filePath;
        }
    }
    return hash.result().toHex();
}

void SpeechChecksumManager::removeFile()
{
    if (QFile::exists(checksumFilePath) && !QFile::remove(checksumFilePath)) {
        ORV_LOG(critical, "void SpeechChecksumManager::removeFile()")
            << "Could not remove old file:" << checksumFilePath;
    }
}

void SpeechChecksumManager::writePersistentData()
{
    // Built as text: a tree of JSON objects would take twice the time and five times the memory of
    // the file.
    constexpr Size usualSize = 192; // of an element
    QByteArray json;
    json.reserve(usualSize * checksums.size());
    json += '[';
    for (auto entry = checksums.constBegin(); entry != checksums.constEnd(); ++entry) {
        json += entry == checksums.constBegin() ? "\n" : ",\n";
        appendElement(json, ChecksumKey(entry.key()), entry.value());
    }
    json += "\n]\n";
    wasWritten = replaceFile(checksumFilePath, json);
    if (!wasWritten) {
        // Unlike the others of this module, this line does not begin with the function.
        ORV_LOGGER("void SpeechChecksumManager::writePersistentData()").warning()
            << "Unable to open file for writing" << checksumFilePath;
    }
}

bool SpeechChecksumManager::isWritten()
{
    return wasWritten;
}
