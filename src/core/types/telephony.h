#pragma once

/**
 * @file
 * Records of phone calls and devices.
 *
 * The library compares the fields named aux… but never interprets them. Texts, identifiers and
 * states are as the source sends them. Thread-safety: the records are plain values.
 */

#include <core/orvcore_export.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>

/** @addtogroup types
 * @{ */

/** Codes that identify applications. */
namespace AppCode {

/** The application code of the hybrid speech application: the digit 1, as a character. */
extern ORVCORE_EXPORT const char HYBRID_SPEECH_APPCODE;

} // namespace AppCode

/** A phone call as the telephony side reports it. */
struct ORVCORE_EXPORT Call
{
    /** Compares all fields except handle and note. */
    bool operator==(const Call& other) const;
    bool operator!=(const Call& other) const
    {
        return !(*this == other);
    }

    /** Earlier calls come first; calls of the same time are equivalent. */
    bool operator<(const Call& other) const;

    quint16 handle = 0; ///< as the telephony side sends it
    QString primaryText;
    QString secondaryText;
    uint aux1 = 0;
    QDateTime time; ///< as the telephony side sends it; invalid by default
    int state = 4;  ///< as the telephony side sends it; the default is 4, not 0
    quint8 aux2 = 0;
    quint16 aux3 = 0;
    quint8 aux4 = 0;
    quint8 aux5 = 0;
    QString note;
};

/** The data of a device, which deviceId identifies. */
struct ORVCORE_EXPORT DeviceMap
{
    bool operator==(const DeviceMap& other) const;
    bool operator!=(const DeviceMap& other) const
    {
        return !(*this == other);
    }

    QByteArray deviceId; ///< as the source sends it
    uint aux1 = 0;
    quint8 aux2 = 0;
};

/** @} */
