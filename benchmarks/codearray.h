#pragma once

#include <core/speech/language.h>

#include <vector>

/** The code of a language, from an array filled by the library. */
inline QByteArray codeOf(int value) {
    static const std::vector<QByteArray> codes = [] {
        std::vector<QByteArray> all;
        for (int each = 0; each <= Thai; ++each) { all.push_back(convertLanguageIdToIso(Language(each))); }
        return all;
    }();
    return codes[std::size_t(value)];
}

/** The same in a shared library, so that it costs a call, as ours does. */
QByteArray calledCodeOf(int value);
