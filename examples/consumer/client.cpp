#include <core/orvcore.h>

#include <QDebug>

int main()
{
    const QString markup = QStringLiteral("<text>Turn left in 300 metres. Then follow the "
                                          "main road for about two miles.</text>");
    const PromptData prompt = PromptData::parse(markup, GeneralContext);
    const Language language = convertIsoToLanguageId("en_GB");
    for (const QString& sentence : SentenceTokenizer::split(prompt.text, language)) {
        qInfo() << language << sentence;
    }
    return prompt.mode == PromptText ? 0 : 1;
}
