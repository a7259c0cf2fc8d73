#pragma once

#include <QString>

/** u"…"_s is a QString. */
inline QString operator""_s(const char16_t* text, std::size_t size)
{
    return QString::fromUtf16(text, int(size));
}
