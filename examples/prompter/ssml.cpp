#include "ssml.h"

#include <QMap>
#include <QProcess>
#include <QRegularExpression>

namespace {

using Tags = QMap<QString, QString>; // the values of the tags in force, by name

bool hasMeaning(const QString& name, const QString& value)
{
    const int number = value.toInt();
    return name == QLatin1String("lang")   ? hasVoice(value)
           : name == QLatin1String("vol")  ? number > 0 && number <= 200
           : name == QLatin1String("rate") ? number >= 25 && number <= 400
                                           : true;
}

QString element(const Tags& tags, QString text)
{
    text.replace(QStringLiteral("[["), QStringLiteral("[ [")); // "[[" would start phonemes
    const QString spoken =
        QStringLiteral("<prosody volume=\"%1\" rate=\"%2%\">%3</prosody>")
            .arg(tags.value(QStringLiteral("vol"), QStringLiteral("100")),
                tags.value(QStringLiteral("rate"), QStringLiteral("100")), text.toHtmlEscaped());
    const QString voice = voiceOf(tags.value(QStringLiteral("lang")));
    return voice.isEmpty() ? spoken
                           : QStringLiteral("<voice xml:lang=\"%1\">%2</voice>").arg(voice, spoken);
}

} // namespace

QString voiceOf(const QString& code)
{
    return code.toLower().replace(QLatin1Char('_'), QLatin1Char('-'));
}

bool hasVoice(const QString& code)
{
    return QProcess::execute(QStringLiteral("espeak-ng"),
               {QStringLiteral("-q"), QStringLiteral("-v") + voiceOf(code), QString()})
           == 0;
}

QString toSsml(const QString& sentence, QStringList& ignored)
{
    // The blank of a tag at the end of a sentence is removed when the text is split.
    static const QRegularExpression pattern(
        QStringLiteral(R"(\\!\\(?:rst|([^\s\\=]+)=([^\s\\]+))\\(?:\s|\z))"));
    Tags tags;
    QString ssml;
    QString::size_type begin = 0;
    const auto sayUntil = [&](QString::size_type end) {
        const QString text = sentence.mid(begin, end - begin).trimmed();
        if (!text.isEmpty()) {
            ssml += element(tags, text);
        }
    };
    for (auto matches = pattern.globalMatch(sentence); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        sayUntil(match.capturedStart());
        begin = match.capturedEnd();
        if (match.captured(1).isEmpty()) {
            tags.clear();
        } else if (hasMeaning(match.captured(1), match.captured(2))) {
            tags.insert(match.captured(1), match.captured(2));
        } else {
            ignored += match.captured(0).trimmed();
        }
    }
    sayUntil(sentence.size());
    return ssml.isEmpty() ? ssml : QStringLiteral("<speak>%1</speak>").arg(ssml);
}
