#include <support/plainways.h>

#include <support/helpers.h>

#include <core/inflate.h>
#include <core/parsers/ecofile.h>
#include <core/speech/speechcommon_p.h>

#include <QBuffer>
#include <QMap>
#include <QRegExp>

#include <climits>
#include <zlib.h>

namespace {

QStringList rejoined(const QStringList& entries, const QString& terminators)
{
    QStringList list;
    for (const QString& entry : entries) {
        const QString last = list.isEmpty() ? QString() : list.last();
        int i = last.size() - 1;
        while (i > 0 && terminators.contains(last[i])) { --i; }
        const bool isLower = entry[0].isLetter() && entry[0].category() != QChar::Letter_Uppercase;
        if (!last.isEmpty() && (isLower || (i > 0 && last[i].isNumber()))) {
            list.last() += QLatin1Char(' ') + entry;
        } else {
            list += entry;
        }
    }
    return list;
}

void merge(QStringList& list, const QString& joiner, bool contextual)
{
    const int limit = 2 * list.size();
    for (int pass = 0; pass < limit; ++pass) {
        int i = 0;
        while (i < list.size() && list[i].size() >= 10 && (!contextual || list[i].count(joiner) >= 5)) { ++i; }
        if (i == list.size() || list.size() == 1) { return; }
        const int previous = i > 0 ? list[i - 1].size() : INT_MAX;
        const int next = i + 1 < list.size() ? list[i + 1].size() : INT_MAX;
        if (previous > next) {
            list[i + 1] = list[i] + joiner + list[i + 1];
        } else {
            list[i - 1] += joiner + list[i];
        }
        list.removeAt(i);
    }
}

void carryTags(QStringList& list)
{
    const QHash<QString, int> ranks = {{u("lang"), 0}, {u("vol"), 2}, {u("rate"), 3}, {u("toi"), 4}, {u("domain"), 6}};
    QRegExp tag(u(R"(\\!(\\)(\S+)=(\S+)(\\)(\s))"));
    QRegExp reset(u(R"(\\!(\\)(rst)(\\)(\s))"));
    QMap<int, QString> carried;
    for (int i = 1; i < list.size(); ++i) {
        const int resetAt = reset.lastIndexIn(list[i - 1]);
        if (resetAt >= 0) { carried.clear(); }
        for (int at = 0; (at = tag.indexIn(list[i - 1], at)) >= 0; at += tag.matchedLength()) {
            if (at > resetAt) { carried[ranks.value(tag.cap(2), -1)] = tag.cap(0); }
        }
        for (const QString& text : qAsConst(carried)) { list[i].prepend(text); }
    }
}

} // namespace

QStringList splitPlainly(const QString& text, Language language)
{
    const bool spaceless = language == Japanese || languageGroup(language) == ChineseGroup;
    const bool contextual = language != Arabic && language != Korean && !spaceless;
    const QString terminators = language == Arabic     ? u("!.؟⸮")
                                : language == Japanese ? u("!?⁇⁈⁉。﹒﹖﹗︒︕︖！？｡．")
                                : spaceless            ? u("!?⁇⁈⁉。﹒﹖﹗︒︕︖！？｡")
                                                       : u("!.?⁇⁈⁉");
    QStringList list;
    QString buffer;
    for (int i = 0; i < text.size(); ++i) {
        buffer += text[i];
        const bool isTag = text[i] == QLatin1Char('!') && i > 0 && text[i - 1] == QLatin1Char('\\');
        const bool isInside = contextual && i + 1 < text.size() && !text[i + 1].isSpace();
        if (terminators.contains(text[i]) && !isInside && !isTag) {
            list += buffer.trimmed();
            buffer.clear();
        }
    }
    list += buffer.trimmed();
    list.removeAll(QString());
    if (contextual) { list = rejoined(list, terminators); }
    merge(list, spaceless ? QString() : u(" "), contextual);
    carryTags(list);
    return list;
}

QStringList fieldsByPattern(const QString& line, char separator)
{
    QRegExp pattern(u("((?:[^%1\"]|\"[^\"]*\"|^[%1])+)").arg(QLatin1Char(separator)));
    QStringList fields;
    for (int at = 0; (at = pattern.indexIn(line, at, QRegExp::CaretAtOffset)) >= 0; at += pattern.matchedLength()) {
        QString field = pattern.cap(1).trimmed();
        for (const char* opening : {";", " ", "\""}) { field = field.startsWith(u(opening)) ? field.mid(1) : field; }
        fields += field.endsWith(u("\"")) ? field.chopped(1) : field;
    }
    return fields;
}

QStringList fieldsOf(const QString& line, int separator, int count)
{
    EcoFile file;
    for (int i = 0; i < count; ++i) { file.parseHeaderLine(u("#Column %1").arg(i)); }
    for (const int each : {int('^'), separator}) { // a line has no fields with the former
        file.parseHeaderLine(u("#Separator %1").arg(each, 0, 16));
        file.parseDataLine(line);
        file.parseDataLine(line);
    }
    QStringList fields;
    for (int i = 0; i < count && file.rows().size() == 2; ++i) { fields += file.rows().last()[QString::number(i)]; }
    return fields;
}

PromptData parsePlainly(const QString& input, PromptContext context, const Sounds& sounds)
{
    const bool onlySounds = context == BrandSoundContext;
    if (!onlySounds && !input.contains(QLatin1Char('<'))) { return PromptData(input, PromptText); }
    static QHash<const PromptForm*, QRegExp> patterns;
    for (const PromptForm& form : promptForms) {
        const bool isSound = form.rule == BrandSoundRule;
        if (onlySounds ? !isSound : context != A4AContext && form.rule < AudioRule) { continue; }
        QRegExp& pattern = patterns[&form];
        if (pattern.isEmpty()) { pattern.setPattern(u(form.pattern.source)); }
        const bool matches = pattern.indexIn(input) >= 0;
        if (isSound) {
            const QString key = matches ? pattern.cap(form.text) : input;
            if (sounds.contains(key)) { return PromptData(sounds[key], PromptAudio); }
            if (onlySounds) { return PromptData(key, PromptText); }
        } else if (matches) {
            PromptData result(pattern.cap(form.text), form.mode);
            if (form.language != 0) { result.language = convertIsoToLanguageId(pattern.cap(form.language).toUtf8()); }
            if (form.genre != 0) { result.genre = pattern.cap(form.genre); }
            return result;
        }
    }
    return PromptData(input, PromptText);
}

QString printed(const PromptData& prompt)
{
    return u("%1 %2 %3 ").arg(prompt.mode).arg(prompt.language).arg(prompt.genre.isEmpty() ? u("-") : prompt.genre)
           + prompt.text;
}

QByteArray inflatedPlainly(QByteArray data, int& result)
{
    z_stream stream = {};
    inflateInit2(&stream, 47);
    stream.next_in = reinterpret_cast<Bytef*>(data.data());
    stream.avail_in = uInt(data.size());
    QByteArray output;
    char block[16384];
    do {
        stream.next_out = reinterpret_cast<Bytef*>(block);
        stream.avail_out = sizeof block;
        result = inflate(&stream, Z_NO_FLUSH);
        output.append(block, result < 0 && result != Z_BUF_ERROR ? 0 : int(sizeof block - stream.avail_out));
    } while (stream.avail_out == 0 && (result >= 0 || result == Z_BUF_ERROR));
    inflateEnd(&stream);
    return output;
}

QByteArray inflated(const QByteArray& data, int pieceSize)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Inflate inflate(buffer);
    inflate << QByteArray();
    for (int i = 0; i < data.size(); i += pieceSize) { inflate << data.mid(i, pieceSize); }
    return buffer.data();
}
