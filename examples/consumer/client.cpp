#include <core/orvcore.h>

#include <QDebug>

int main()
{
    const QString markup = QStringLiteral("<text>Turn left after three hundred metres. "
                                          "Then follow the main road for two miles.</text>");
    const PromptData prompt = PromptData::parse(markup, GeneralContext);
    const Language language = convertIsoToLanguageId("en_GB");
    for (const QString& sentence : SentenceTokenizer::split(prompt.text, language)) {
        qInfo() << language << sentence;
    }
    return prompt.mode == PromptText ? 0 : 1;
}
