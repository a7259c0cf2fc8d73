#include "comparison.h"

#include <core/speech/language.h>

#include <benchmark/benchmark.h>

#include <QHash>
#include <QVector>

#include <vector>

namespace {

/** The code of a language, from an array filled by the library. */
QByteArray codeOf(int value) {
    static const std::vector<QByteArray> codes = [] {
        std::vector<QByteArray> all;
        for (int each = 0; each <= Thai; ++each) { all.push_back(convertLanguageIdToIso(Language(each))); }
        return all;
    }();
    return codes[std::size_t(value)];
}

// Called through a pointer, like a function of a shared library.
QByteArray (*volatile calledCodeOf)(int) = codeOf;

} // namespace

void addLanguages() {
    static QHash<QByteArray, Language> languages;
    static QVector<QByteArray> known;
    for (int value = 0; value <= Thai; ++value) {
        const QByteArray iso = convertLanguageIdToIso(Language(value));
        if (!iso.isEmpty()) {
            known.append(QByteArray(iso.constData()));
            languages.insert(known.last(), Language(value));
        }
    }
    addComparison({"language to code", "all 35 values",
        [] {
            for (int value = 0; value <= Thai; ++value) {
                benchmark::DoNotOptimize(convertLanguageIdToIso(Language(value)));
            }
        },
        {{"static byte arrays, called",
             [] {
                 for (int value = 0; value <= Thai; ++value) { benchmark::DoNotOptimize(calledCodeOf(value)); }
             },
             1.5},
            {"inlined",
                [] {
                    for (int value = 0; value <= Thai; ++value) { benchmark::DoNotOptimize(codeOf(value)); }
                }}},
        0});
    addComparison({"code to language", "all 34 codes",
        [] {
            for (const QByteArray& code : qAsConst(known)) { benchmark::DoNotOptimize(convertIsoToLanguageId(code)); }
        },
        {{"QHash",
            [] {
                for (const QByteArray& code : qAsConst(known)) {
                    benchmark::DoNotOptimize(languages.value(code, InvalidLanguage));
                }
            },
            1.0}},
        0});
}
